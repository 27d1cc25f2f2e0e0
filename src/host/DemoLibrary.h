#pragma once
// The demo library of `dse init`: draw-set types, six node details with bars, params
// and scripts, a bar picture catalogue with its dictionaries, and the metric
// diameter dictionary. Draw sets are written through the draw-set model and the
// data server's save, as the editor would write them.

#include <QString>
#include <QtGlobal>

class TDrawSetLibrary;

// Fills an empty library. Raises Exception on failure.
void FillDemoLibrary(TDrawSetLibrary& ALibrary);

// Creates a library with the demo content at a file name or a postgresql:// URI. The
// file appears only when complete, the database's tables only when committed; an
// existing library is replaced only with AForce. Raises Exception with a plain message.
void CreateDemoLibrary(const QString& ALocation, bool AForce);

// Copies every row of the library at ASource into a new library at ATarget, with the
// same all-or-nothing rule as CreateDemoLibrary. Returns the number of rows copied.
qint64 CopyLibrary(const QString& ASource, const QString& ATarget, bool AForce);
