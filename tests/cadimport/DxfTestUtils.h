#pragma once
// Writes small DXF files for the tests, and records what a walk asks of a converter.

#include "CADConverterIntf.h"
#include "KRNPolygon2d.h"

#include <QStringDecoder>
#include <QStringEncoder>
#include <QStringList>

namespace dxf_test {

inline QString S(const char* AText) { return QString::fromUtf8(AText); }

// One group: the code right-aligned in three columns, then the value.
inline QString G(int ACode, const QString& AValue) { return QStringLiteral("%1\n%2\n").arg(ACode, 3).arg(AValue); }
inline QString G(int ACode, const char* AValue) { return G(ACode, S(AValue)); }
inline QString G(int ACode, double AValue) { return G(ACode, QString::number(AValue, 'g', 17)); }
inline QString G(int ACode, int AValue) { return G(ACode, QString::number(AValue)); }

struct TDxfFile {
  QString Version = QStringLiteral("AC1021");  // UTF-8
  QString CodePage = QStringLiteral("ANSI_936");
  int InsUnits = 4;
  QString Tables, Blocks, Entities;
  QByteArray Encoding = "UTF-8";

  TDxfFile& Layer(const char* AName, int AAci, int AFlags = 0, const char* ALineType = "CONTINUOUS") {
    Tables += G(0, "LAYER") + G(2, AName) + G(70, AFlags) + G(62, AAci) + G(6, ALineType);
    return *this;
  }
  TDxfFile& Block(const char* AName, double ABaseX, double ABaseY, const QString& AEntities) {
    Blocks += G(0, "BLOCK") + G(8, "0") + G(2, AName) + G(70, 0) + G(10, ABaseX) + G(20, ABaseY) + G(30, 0.0) +
              AEntities + G(0, "ENDBLK") + G(8, "0");
    return *this;
  }
  TDxfFile& Add(const QString& AEntity) {
    Entities += AEntity;
    return *this;
  }
  QString Text() const {
    QString T = G(999, "written by the tests") + G(0, "SECTION") + G(2, "HEADER") + G(9, "$ACADVER") + G(1, Version);
    if (!CodePage.isEmpty()) T += G(9, "$DWGCODEPAGE") + G(3, CodePage);
    T += G(9, "$INSUNITS") + G(70, InsUnits) + G(0, "ENDSEC");
    T += G(0, "SECTION") + G(2, "TABLES") + G(0, "TABLE") + G(2, "LAYER") + G(70, 1) + Tables + G(0, "ENDTAB") +
         G(0, "ENDSEC");
    T += G(0, "SECTION") + G(2, "BLOCKS") + Blocks + G(0, "ENDSEC");
    T += G(0, "SECTION") + G(2, "ENTITIES") + Entities + G(0, "ENDSEC") + G(0, "EOF");
    return T;
  }
  QByteArray Bytes() const {
    if (Encoding == "UTF-8") return Text().toUtf8();
    QStringEncoder E(Encoding.constData());
    return E.encode(Text());
  }
};

inline QString Num(double V) {
  if (std::fabs(V) < 1e-9) V = 0;
  return QString::number(V, 'g', 6);
}
inline QString Pt(const TKRNVector2d& P) { return QStringLiteral("(%1,%2)").arg(Num(P.X), Num(P.Y)); }
inline QString Hex(TColor C) { return QStringLiteral("%1").arg(C, 6, 16, QLatin1Char('0')); }

// Every call of a walk as one line of text.
class TRecorder : public ICADConverterIntf {
public:
  QStringList Calls;
  int MaxCount = -1;
  QVector<double> Progress;

  void beginConvert(int AMaxCount) override { MaxCount = AMaxCount; }
  void endConvert() override { Calls << S("end"); }
  void buildCADLayer(const QString& ALayerName, bool, TColor AColor) override {
    const QString L = QStringLiteral("layer %1 %2").arg(ALayerName, Hex(AColor));
    if (Calls.isEmpty() || Calls.back() != L) Calls << L;
  }
  void BuildArc(const QString& ALayerName, const TKRNVector2d& C, const TKRNVector2d& S0, const TKRNVector2d& E,
                double R, TKRNArcType T, int Pen, TColor Color, double, int, int, double) override {
    Calls << QStringLiteral("arc %1 c%2 %3-%4 r%5 t%6 pen%7 %8")
                 .arg(ALayerName, Pt(C), Pt(S0), Pt(E), Num(R), QString::number(int(T)), QString::number(Pen), Hex(Color));
  }
  void BuildCircle(const QString& ALayerName, const TKRNVector2d& C, double R, int Pen, TColor Color, double, int, int,
                   double) override {
    Calls << QStringLiteral("circle %1 c%2 r%3 pen%4 %5").arg(ALayerName, Pt(C), Num(R), QString::number(Pen), Hex(Color));
  }
  void BuildLine(const QString& ALayerName, const TKRNVector2d& A, const TKRNVector2d& B, int Pen, TColor Color, double,
                 int, int, double) override {
    Calls << QStringLiteral("line %1 %2-%3 pen%4 %5").arg(ALayerName, Pt(A), Pt(B), QString::number(Pen), Hex(Color));
  }
  void BuildPolyLine(const QString& ALayerName, const TKRNLines2d& L, int Pen, TColor Color, double, int, int,
                     double) override {
    QString T = QStringLiteral("poly %1 pen%2 %3").arg(ALayerName, QString::number(Pen), Hex(Color));
    for (int I = 0; I < L.Count(); ++I) {
      const TKRNVertex2d* V = L.List().Items(I);
      T += u' ' + Pt(V->Point());
      if (V->VertexType() == vtArc) T += QStringLiteral("a%1r%2").arg(int(V->ArcType())).arg(Num(V->Radius()));
    }
    Calls << T;
    PolyPoints << L.Count();
  }
  void BuildPolyLine(const QString&, const TKRNLines2d&, int, TColor, double, bool, bool, int, int, double) override {
    Calls << S("poly form 8");
  }
  void BuildViewportBorder(const QString&, const TKRNLines2d&, int, TColor, double, int, int, double) override {}
  void BuildHatch(const QString& ALayerName, const TKRNMultiPolygon2d& B, int, const QString&, int, TColor, double, int,
                  int, double, const TKRNPoint2dDynArray&, const TKRNPoint2dDynArray&) override {
    Calls << QStringLiteral("hatch %1 loops%2").arg(ALayerName).arg(B.Count());
  }
  void BuildText(const QString& ALayerName, const QString& AText, TColor Color, const TKRNVector2d& P, double AScale,
                 double AHeight, double ARot, THorzAlignment H, TVertAlignment V, int, int, double) override {
    Calls << QStringLiteral("text %1 \"%2\" %3 h%4 rot%5 w%6 ha%7 va%8 %9")
                 .arg(ALayerName, AText, Pt(P), Num(AHeight), Num(ARot), Num(AScale), QString::number(int(H)),
                      QString::number(int(V)), Hex(Color));
  }
  void BuildCadImage(const QString&, const TKRNVector2d&, double, double, double, int, int) override {}
  void BuildComment(const QString&, const QString&, const TKRNVector2d&, const TKRNLines2d&, int, int) override {}
  void RefreshProgressBar(double APos) override { Progress << APos; }
  double GetCurrentScale() override { return 1.0; }
  double GetViewportImportScale() override { return 1.0; }
  void SetViewportImportScale(double) override {}
  void BuildPoint(const QString& ALayerName, const TKRNVector2d& P, TColor Color, int, int, double) override {
    Calls << QStringLiteral("point %1 %2 %3").arg(ALayerName, Pt(P), Hex(Color));
  }
  QVector<int> PolyPoints;

  // The build calls alone (no layer lines, no end).
  QStringList Items() const {
    QStringList R;
    for (const QString& C : Calls)
      if (!C.startsWith(QLatin1String("layer ")) && C != QLatin1String("end")) R << C;
    return R;
  }
};

}  // namespace dxf_test
