#pragma once

#include "host/checks/PluginCheck.h"

#include <QCoreApplication>

#include <memory>

/// What is needed to draw images in a program without windows: a `QGuiApplication` that needs no display, or
/// a mere `QCoreApplication` when stepctl is built without Qt Gui.
std::unique_ptr<QCoreApplication> createDrawingApplication(int &argc, char **argv);

/// Draws what Qt has image plug-ins for; the one for SVG comes with Qt Svg. Empty when stepctl is built without
/// Qt Gui. It may be called as long as the application of createDrawingApplication() lives.
StepHost::IconRenderer iconRenderer();
