#pragma once

#include "host/checks/PluginCheck.h"

#include <QCoreApplication>

#include <memory>

/// What is needed to draw images in a program without windows: a `QGuiApplication` that needs no display, or
/// a mere `QCoreApplication` when stepctl is built without Qt Gui and Qt Svg.
std::unique_ptr<QCoreApplication> createDrawingApplication(int &argc, char **argv);

/// Draws images, SVG and what Qt has image plug-ins for. Empty when stepctl is built without Qt Gui and Qt
/// Svg. It may be called as long as the application of createDrawingApplication() lives.
StepHost::IconRenderer iconRenderer();
