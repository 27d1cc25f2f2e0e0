#pragma once
// A reader of ASCII DXF files (R12 to current) that walks the model space into a
// converter: the header's units and code page, layers, blocks with nested and arrayed
// inserts, and the drawable entities. Binary DXF and anything else is refused.

#include "SysUtils.h"

#include <QByteArray>
#include <QStringList>

#include <functional>

class ICADConverterIntf;

class EDxfError : public Exception {
public:
  using Exception::Exception;
};

struct TDxfOptions {
  // Picks the code character of the diameter mark in texts (6: "P", 13: "A", else "Φ").
  int RegionCode = 1;
  // 0 to 100 as the work goes on: reading the file, then walking the entities.
  std::function<void(double)> Progress;
  // The most drawing items an import may make once blocks and arrays are expanded.
  qint64 MaxItems = 20000000;
};

struct TDxfSummary {
  QString Version;         // $ACADVER, "AC1015" etc.
  QString CodePage;        // $DWGCODEPAGE as written
  double UnitScale = 1.0;  // millimetres per drawing unit ($INSUNITS)
  int Layers = 0, Blocks = 0, Entities = 0;  // as read
  qint64 Calls = 0;        // build calls made
  QStringList Warnings;    // what was left out and why
};

// The largest file the reader takes.
constexpr qint64 kMaxDxfBytes = qint64(2) * 1024 * 1024 * 1024 - 1;

// Raises EDxfError with the line number and a plain message on a malformed file.
TDxfSummary ReadDxf(const QByteArray& AData, ICADConverterIntf& AConverter, const TDxfOptions& AOptions = {});

// Helpers with a use of their own, tested on their own.
namespace dxf {
// The RGB colour (0x00BBGGRR) of an AutoCAD colour index 1..255.
quint32 AciColor(int AIndex);
// MTEXT's formatting codes taken out; paragraph breaks become line breaks.
QString StripMTextFormat(const QString& AText);
// %%c, %%d, %%p and %%% of single-line texts.
QString ReplaceTextCodes(const QString& AText);
}  // namespace dxf
