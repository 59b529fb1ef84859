#pragma once

#include "OperationCoreExport.h"

/// The host's registry of property editors.
///
/// A host with a user interface derives from it and hands it to IOperationPlugin::registerEditors().
/// The contract gives it no members of its own.
class OPERATIONCORE_EXPORT IEditorRegistry
{
public:
    IEditorRegistry();
    virtual ~IEditorRegistry();

private:
    Q_DISABLE_COPY(IEditorRegistry)
};
