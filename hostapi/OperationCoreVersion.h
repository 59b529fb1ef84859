#pragma once

/// \file
/// The version of the contract, and the interface id of a plug-in.

/// The version of the contract that these headers state. A plug-in answers it from
/// IOperationPlugin::apiVersion() and in its manifest, and so tells the host what it was compiled against.
constexpr int operationCoreApiVersion = 2;

/// The interface id, with the interface's own version, that a plug-in names in `Q_PLUGIN_METADATA` and a host
/// looks for in its metadata.
#define IOperationPlugin_iid "com.tallowby.Quillmap.IOperationPlugin/1.0"
