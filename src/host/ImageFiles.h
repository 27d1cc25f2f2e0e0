#pragma once
// Pictures the program writes (screenshots, renders), saved like every other output:
// whole, under the exact bytes of the name given.

#include <QImage>
#include <QString>

// False with the cause in AError.
bool SavePng(const QImage& AImage, const QString& AFileName, QString& AError);
