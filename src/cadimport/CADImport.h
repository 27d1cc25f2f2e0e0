#pragma once
// The CAD import of the editor: a DXF file becomes the content of a drawing through
// TCADtoVDEBuilder. DWG files are refused: only DXF is read.

#include "DxfReader.h"

class TVectorDrawing;

// Raises Exception with a plain message (a DWG file, a file that cannot be read, a
// malformed DXF); the drawing is untouched unless the file was read whole.
TDxfSummary ImportCADFile(const QString& AFileName, TVectorDrawing& AVectorDrawing, int ALayoutIndex = 0,
                          const TDxfOptions& AOptions = {});

// True for the names the import takes as CAD files (.dxf, .dwg, any case).
bool IsCADFileName(const QString& AFileName);
