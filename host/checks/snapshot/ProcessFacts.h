#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace StepHost
{
/// The environment variable that names the folder below which a process has its home, its temporary files and its
/// current folder for itself.
constexpr char checkFolderVariable[] = "QUILLMAP_CHECK_FOLDER";

/// One kind of thing that a process is or has, and that a plug-in has to leave as it is.
struct ProcessFacet
{
    QString id; ///< Such as `environment`.
    QString protects; ///< What the host keeps, in one line.
    QStringList (
        *facts)(); ///< What there is of it now, in a form for people, each fact once. Null where it is not told.
    bool mayGo = false; ///< Whether it is fine when something of it is gone afterwards.
};

/// All of them.
const QVector<ProcessFacet> &processFacets();

/// What the facets of one source tell. Those that this system does not tell have no function.
/// @{
QVector<ProcessFacet> qtFacets();
QVector<ProcessFacet> systemFacets();
QVector<ProcessFacet> fileFacets();
/// @}

/// Makes what Qt and the C library make on first use, so that it does not look like a plug-in's doing. To be called
/// before the first snapshot.
void warmUp();
} // namespace StepHost
