#include "IOperationPlugin.h"

#include "IEditorRegistry.h"

IOperationPlugin::IOperationPlugin() = default;
IOperationPlugin::~IOperationPlugin() = default;

void IOperationPlugin::registerEditors(IEditorRegistry &) { }

IEditorRegistry::IEditorRegistry() = default;
IEditorRegistry::~IEditorRegistry() = default;
