#include "CADImport.h"

#include "CADtoVDEBuilder.h"

#include <QFileInfo>

bool IsCADFileName(const QString& AFileName) {
  const QString Suffix = QFileInfo(AFileName).suffix().toLower();
  return Suffix == QLatin1String("dxf") || Suffix == QLatin1String("dwg");
}

TDxfSummary ImportCADFile(const QString& AFileName, TVectorDrawing& AVectorDrawing, int, const TDxfOptions& AOptions) {
  if (QFileInfo(AFileName).suffix().compare(QLatin1String("dwg"), Qt::CaseInsensitive) == 0)
    throw EDxfError(QStringLiteral("不能读取 DWG 文件：只读取 DXF 文件，请在 CAD 中把图形另存为 DXF 后再导入"));
  const TFileStatus Info = FileStatus(AFileName);
  if (!Info.Exists) throw EDxfError(QStringLiteral("文件不存在：%1").arg(AFileName));
  if (Info.IsDir) throw EDxfError(QStringLiteral("%1 是一个目录，不是 DXF 文件").arg(AFileName));
  QByteArray Data;
  QString Error;
  if (!ReadFileCapped(AFileName, kMaxDxfBytes, Data, Error))
    throw EDxfError(Error);
  if (Data.startsWith("AC10") || Data.startsWith("AC1."))
    throw EDxfError(QStringLiteral("这是 DWG 文件，不是 DXF 文件：只读取 DXF 文件，请在 CAD 中另存为 DXF 后再导入"));
  TCADtoVDEBuilder Builder(AVectorDrawing);
  return ReadDxf(Data, Builder, AOptions);
}
