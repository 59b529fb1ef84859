#pragma once

/// What the host calls.
enum class Call { Construct, Identity, Prototypes, Clone, Edit, Text, Save, Load, Run, Delete };

/// Leaves the process changed during \a call, where the fault asks for it.
void misbehave(Call call);
