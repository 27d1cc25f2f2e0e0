#pragma once
// The demo library of `dse init`: draw-set types, six node details with bars, params
// and scripts, a bar picture catalogue with its dictionaries, and the metric
// diameter dictionary. Draw sets are written through the draw-set model and the
// data server's save, as the editor would write them.

#include <QString>

class TDrawSetLibrary;

// Fills an empty library. Raises Exception on failure.
void FillDemoLibrary(TDrawSetLibrary& ALibrary);

// Creates FileName with the demo content. The file appears only when complete; an
// existing file is replaced only with AForce. Raises Exception with a plain message.
void CreateDemoLibrary(const QString& AFileName, bool AForce);
