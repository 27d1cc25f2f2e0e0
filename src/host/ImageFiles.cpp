#include "ImageFiles.h"

#include "SysUtils.h"

#include <QBuffer>

bool SavePng(const QImage& AImage, const QString& AFileName, QString& AError) {
  QByteArray Bytes;
  QBuffer Buffer(&Bytes);
  Buffer.open(QIODevice::WriteOnly);
  if (!AImage.save(&Buffer, "PNG")) {
    AError = QStringLiteral("the picture cannot be encoded");
    return false;
  }
  return WriteFileAtomically(AFileName, Bytes, AError);
}
