#pragma once

#include <QString>

/// Where the tests find what they work with. All paths are absolute, as the test programs see them.
namespace TestPaths
{
/// The file or folder \a name of the source tree, such as `tests/scripts`.
QString source(const QString &name);

/// The module of the list steps.
QString listPlugin();

/// The contract's library.
QString operationCore();

QString stepctl();

/// The module of tests/plugins that is called \a name.
QString fixture(const QString &name);

/// The folder of the modules that fixture() names.
QString fixtureFolder();

/// The module with the fault \a fault of tests/plugins/check.
QString faultyPlugin(const QString &fault);

/// The library that the modules of faultyPlugin() share. It is no plug-in.
QString faultyLibrary();

/// What the name of a module ends in, such as `.so`.
QString moduleSuffix();
} // namespace TestPaths
