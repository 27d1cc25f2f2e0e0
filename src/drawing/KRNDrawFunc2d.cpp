#include "KRNDrawFunc2d.h"

#include "KRNPositionFunc2d.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace {

TColor GElasticColor = 0xFFFFFF;

// Sets the raster mode for one call and puts the painter back afterwards.
class TPaintScope {
public:
  TPaintScope(QPainter& APainter, TDrawMode AMode) : P(APainter) {
    P.save();
    P.setRenderHint(QPainter::Antialiasing, false);
    P.setRenderHint(QPainter::TextAntialiasing, false);
    switch (AMode) {
      case dmXOR: P.setCompositionMode(QPainter::RasterOp_SourceXorDestination); break;
      case dmNot: P.setCompositionMode(QPainter::RasterOp_NotDestination); break;
      case dmNOP: P.setCompositionMode(QPainter::CompositionMode_Destination); break;
      default: P.setCompositionMode(QPainter::CompositionMode_SourceOver); break;
    }
  }
  ~TPaintScope() { P.restore(); }

private:
  QPainter& P;
};

Qt::PenStyle ToQtPenStyle(int AStyle) {
  switch (AStyle) {
    case psDash: return Qt::DashLine;
    case psDot: return Qt::DotLine;
    case psDashDot: return Qt::DashDotLine;
    case psDashDotDot: return Qt::DashDotDotLine;
    case psClear: return Qt::NoPen;
    default: return Qt::SolidLine;
  }
}

Qt::BrushStyle ToQtBrushStyle(int AStyle) {
  switch (AStyle) {
    case bsClear: return Qt::NoBrush;
    case bsHorizontal: return Qt::HorPattern;
    case bsVertical: return Qt::VerPattern;
    case bsFDiagonal: return Qt::FDiagPattern;
    case bsBDiagonal: return Qt::BDiagPattern;
    case bsCross: return Qt::CrossPattern;
    case bsDiagCross: return Qt::DiagCrossPattern;
    default: return Qt::SolidPattern;
  }
}

// Below 0 no pen; above 1 a geometric pen (flat ends, mitred joins) whose brush
// follows the fill argument; otherwise a cosmetic pen of the style.
QPen MakePen(int ADeviceWidth, int AStyle, TColor AColor, int AFillMode = bsSolid) {
  if (ADeviceWidth < 0 || AStyle == psClear) return QPen(Qt::NoPen);
  if (ADeviceWidth > 1) {
    const Qt::BrushStyle B = (AFillMode == bsSolid || AFillMode == bsClear) ? Qt::SolidPattern : ToQtBrushStyle(AFillMode);
    QPen P(QBrush(ToQColor(AColor), B), ADeviceWidth, ToQtPenStyle(AStyle), Qt::FlatCap, Qt::MiterJoin);
    return P;
  }
  QPen P(ToQColor(AColor), 0, ToQtPenStyle(AStyle));
  P.setCosmetic(true);
  return P;
}

QPointF Dev(const TKRNCoordTrans& T, const TKRNVector2d& P) {
  const TKRNPoint2i D = T.WCTODC(P);
  return QPointF(D.X, D.Y);
}

void Stroke(QPainter& AHDC, const std::vector<QPointF>& APoints, const QPen& APen, TDrawMode AMode) {
  if (APoints.size() < 2 || AMode == dmNOP) return;
  TPaintScope S(AHDC, AMode);
  AHDC.setPen(APen);
  AHDC.setBrush(Qt::NoBrush);
  if (APoints.size() == 2) AHDC.drawLine(APoints[0], APoints[1]);
  else AHDC.drawPolyline(APoints.data(), int(APoints.size()));
}

// A copy of a segment moved sideways by AOff world units (left of its course).
TKRNPtr<TKRNCustomLine2d> OffsetEdge(const TKRNCustomLine2d& AEdge, double AOff) {
  TKRNPtr<TKRNCustomLine2d> E = AEdge.Clone();
  if (AOff == 0) return E;
  TKRNVector2d C;
  if (AEdge.IsArcType() && TKRNArc2d::CalcCenterPt(AEdge.StartPt(), AEdge.EndPt(), AEdge.Radius(), AEdge.ArcType(), C)) {
    const bool Cw = ArcTypeIsClockwise(AEdge.ArcType());
    const double R = AEdge.Radius() + (Cw ? AOff : -AOff);
    if (R <= 0) return E;
    auto* A = static_cast<TKRNArc2d*>(E.get());
    A->SetStartPt(VectorAdd(C, VectorScale(VectorNormalized(VectorSub(AEdge.StartPt(), C)), R)));
    A->SetEndPt(VectorAdd(C, VectorScale(VectorNormalized(VectorSub(AEdge.EndPt(), C)), R)));
    A->SetRadius(R);
    return E;
  }
  const TKRNVector2d N = VectorScale(VectorPerpendicular(AEdge.StartVector(), false), AOff);
  E->SetStartPt(VectorAdd(AEdge.StartPt(), N));
  E->SetEndPt(VectorAdd(AEdge.EndPt(), N));
  return E;
}

void AppendPolygonPoints(const TKRNCoordTrans& ATrans, const TKRNCustomPolygon2d& APoly, std::vector<QPointF>& APts) {
  const int N = APoly.GetCount();
  for (int I = 0; I < N; ++I)
    if (const TKRNPtr<TKRNCustomLine2d> E = APoly.EdgeLine(I)) TKRNDrawFunc2d::AppendDevicePoints(ATrans, *E, APts, I == 0);
}

}  // namespace

QColor ToQColor(TColor AColor) { return QColor(int(AColor & 0xFF), int((AColor >> 8) & 0xFF), int((AColor >> 16) & 0xFF)); }

TColor TKRNDrawFunc2d::ElasticColor() { return GElasticColor; }
void TKRNDrawFunc2d::SetElasticColor(TColor AColor) { GElasticColor = AColor; }

int TKRNDrawFunc2d::DeviceWidth(const TKRNCoordTrans& ATrans, double ALineWidth) {
  if (ALineWidth >= 0) return ATrans.WCTODC(ALineWidth);
  return int(std::trunc(-ALineWidth));
}

void TKRNDrawFunc2d::AppendDevicePoints(const TKRNCoordTrans& ATrans, const TKRNCustomLine2d& AEdge,
                                        std::vector<QPointF>& APoints, bool AWithStart) {
  TKRNVector2d C;
  if (AEdge.IsArcType() && TKRNArc2d::CalcCenterPt(AEdge.StartPt(), AEdge.EndPt(), AEdge.Radius(), AEdge.ArcType(), C)) {
    // About one segment per 3 device pixels of arc, within bounds.
    const double Sweep = TKRNArc2d::ArcSweep(AEdge.StartPt(), AEdge.EndPt(), AEdge.Radius(), AEdge.ArcType());
    const double Pixels = Sweep * ATrans.ZoomFactor() * AEdge.Radius();
    const int Count = int(std::clamp(Pixels / 3, 1.0, 720.0)) + 1;
    const int Rate = int(std::ceil(Count * KRNTwoPi / std::max(Sweep, 1e-9)));
    const TKRNPoint2dDynArray Pts =
        TKRNArc2d::ArcSamplePoint(AEdge.StartPt(), AEdge.EndPt(), AEdge.Radius(), AEdge.ArcType(), std::min(Rate, 1 << 20));
    for (size_t I = AWithStart ? 0 : 1; I < Pts.size(); ++I) APoints.push_back(Dev(ATrans, Pts[I]));
    return;
  }
  if (AWithStart) APoints.push_back(Dev(ATrans, AEdge.StartPt()));
  APoints.push_back(Dev(ATrans, AEdge.EndPt()));
}

void TKRNDrawFunc2d::DrawLine(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& AStartPt,
                              const TKRNVector2d& AEndPt, double ALineWidth, double ACenterLineOff, int ALineStyle,
                              TColor AColor, TDrawMode ADrawMode, int AFillMode) {
  const TKRNLine2d L(AStartPt, AEndPt);
  const TKRNPtr<TKRNCustomLine2d> E = OffsetEdge(L, ACenterLineOff);
  Stroke(AHDC, {Dev(ATrans, E->StartPt()), Dev(ATrans, E->EndPt())},
         MakePen(DeviceWidth(ATrans, ALineWidth), ALineStyle, AColor, AFillMode), ADrawMode);
}

void TKRNDrawFunc2d::DrawArc(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& AStartPt,
                             const TKRNVector2d& AEndPt, double ARadius, TKRNArcType AArcType, double ALineWidth,
                             double ACenterLineOff, int ALineStyle, TColor AColor, TDrawMode ADrawMode) {
  const TKRNArc2d A(AStartPt, AEndPt, ARadius, AArcType);
  const TKRNPtr<TKRNCustomLine2d> E = OffsetEdge(A, ACenterLineOff);
  std::vector<QPointF> Pts;
  AppendDevicePoints(ATrans, *E, Pts, true);
  Stroke(AHDC, Pts, MakePen(DeviceWidth(ATrans, ALineWidth), ALineStyle, AColor), ADrawMode);
}

void TKRNDrawFunc2d::DrawCircle(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& ACenterPt,
                                double ARadius, double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode) {
  if (ADrawMode == dmNOP) return;
  const TKRNPoint2i C = ATrans.WCTODC(ACenterPt);
  const int R = ATrans.WCTODC(ARadius);
  TPaintScope S(AHDC, ADrawMode);
  AHDC.setPen(MakePen(DeviceWidth(ATrans, ALineWidth), ALineStyle, AColor));
  AHDC.setBrush(Qt::NoBrush);
  AHDC.drawEllipse(QPoint(C.X, C.Y), R, R);
}

void TKRNDrawFunc2d::DrawDiagCross(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& AInsertPt,
                                   double ALineLen, int ALineWidthDC, int ALineStyle, TColor AColor,
                                   TDrawMode ADrawMode) {
  const double H = ALineLen / 2;
  const QPen Pen = MakePen(ALineWidthDC, ALineStyle, AColor);
  Stroke(AHDC, {Dev(ATrans, {AInsertPt.X - H, AInsertPt.Y - H}), Dev(ATrans, {AInsertPt.X + H, AInsertPt.Y + H})}, Pen,
         ADrawMode);
  Stroke(AHDC, {Dev(ATrans, {AInsertPt.X - H, AInsertPt.Y + H}), Dev(ATrans, {AInsertPt.X + H, AInsertPt.Y - H})}, Pen,
         ADrawMode);
}

void TKRNDrawFunc2d::DrawPixel(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& APoint,
                               TColor AColor, TDrawMode ADrawMode) {
  if (ADrawMode == dmNOP) return;
  TPaintScope S(AHDC, ADrawMode);
  QPen P(ToQColor(AColor), 0);
  P.setCosmetic(true);
  AHDC.setPen(P);
  AHDC.drawPoint(Dev(ATrans, APoint));
}

void TKRNDrawFunc2d::DrawPolyline(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNPoint2dDynArray& APoints,
                                  double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode) {
  std::vector<QPointF> Pts;
  Pts.reserve(APoints.size());
  for (const TKRNVector2d& P : APoints) Pts.push_back(Dev(ATrans, P));
  Stroke(AHDC, Pts, MakePen(DeviceWidth(ATrans, ALineWidth), ALineStyle, AColor), ADrawMode);
}

void TKRNDrawFunc2d::DrawXLine(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNCustomLine2d& ALine,
                               double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode) {
  std::vector<QPointF> Pts;
  AppendDevicePoints(ATrans, ALine, Pts, true);
  Stroke(AHDC, Pts, MakePen(DeviceWidth(ATrans, ALineWidth), ALineStyle, AColor), ADrawMode);
}

void TKRNDrawFunc2d::DrawXPolyline(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNLines2d& ALines,
                                   double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode) {
  std::vector<QPointF> Pts;
  const int N = ALines.Count();
  if (N == 1) Pts.push_back(Dev(ATrans, ALines.List().Points(0)));
  for (int I = 0; I + 1 < N; ++I)
    if (const TKRNPtr<TKRNCustomLine2d> E = ALines.List().EdgeLine(I, false)) AppendDevicePoints(ATrans, *E, Pts, I == 0);
  Stroke(AHDC, Pts, MakePen(DeviceWidth(ATrans, ALineWidth), ALineStyle, AColor), ADrawMode);
}

void TKRNDrawFunc2d::DrawXPoly(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNCustomPolygon2d& APoly,
                               double ALineWidth, int ALineStyle, TColor AColor, TDrawMode ADrawMode) {
  std::vector<QPointF> Pts;
  AppendPolygonPoints(ATrans, APoly, Pts);
  if (!Pts.empty()) Pts.push_back(Pts.front());
  Stroke(AHDC, Pts, MakePen(DeviceWidth(ATrans, ALineWidth), ALineStyle, AColor), ADrawMode);
}

void TKRNDrawFunc2d::DrawRect(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNBox2d& ABox, double ALineWidth,
                              int ALineStyle, TColor AColor, TDrawMode ADrawMode) {
  DrawXPoly(AHDC, ATrans, TKRNPolygon2d(ABox), ALineWidth, ALineStyle, AColor, ADrawMode);
}

void TKRNDrawFunc2d::DrawRectElastic(QPainter& AHDC, const TKRNPoint2i& AStart, const TKRNPoint2i& AEnd,
                                     int ALineStyle) {
  const std::vector<QPointF> Pts = {QPointF(AStart.X, AStart.Y), QPointF(AEnd.X, AStart.Y), QPointF(AEnd.X, AEnd.Y),
                                    QPointF(AStart.X, AEnd.Y), QPointF(AStart.X, AStart.Y)};
  Stroke(AHDC, Pts, MakePen(0, ALineStyle, GElasticColor), dmXOR);
}

static void FillDevice(QPainter& AHDC, const std::vector<QPointF>& APts, TColor AFillColor, TDrawMode ADrawMode,
                       int AFillMode, int AOutlineWidth, int AOutlineStyle, TColor AOutlineColor) {
  if (APts.size() < 3 || ADrawMode == dmNOP) return;
  TPaintScope S(AHDC, ADrawMode);
  AHDC.setPen(MakePen(AOutlineWidth, AOutlineStyle, AOutlineColor));
  AHDC.setBrush(QBrush(ToQColor(AFillColor), ToQtBrushStyle(AFillMode)));
  AHDC.setBackgroundMode(Qt::TransparentMode);
  AHDC.drawPolygon(APts.data(), int(APts.size()));
}

void TKRNDrawFunc2d::FillCircle(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNVector2d& ACenterPt,
                                double ARadius, TColor AFillColor, TDrawMode ADrawMode, int AFillMode,
                                int AOutlineWidth, int AOutlineStyle, TColor AOutlineColor) {
  if (ADrawMode == dmNOP) return;
  const TKRNPoint2i C = ATrans.WCTODC(ACenterPt);
  const int R = ATrans.WCTODC(ARadius);
  TPaintScope S(AHDC, ADrawMode);
  AHDC.setPen(MakePen(AOutlineWidth, AOutlineStyle, AOutlineColor));
  AHDC.setBrush(QBrush(ToQColor(AFillColor), ToQtBrushStyle(AFillMode)));
  AHDC.drawEllipse(QPoint(C.X, C.Y), R, R);
}

void TKRNDrawFunc2d::FillRect(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNBox2d& ABox, TColor AFillColor,
                              TDrawMode ADrawMode, int AFillMode) {
  if (ADrawMode == dmNOP) return;
  const TKRNRect R = ATrans.WCTODC(ABox);
  TPaintScope S(AHDC, ADrawMode);
  AHDC.fillRect(QRect(QPoint(R.Left, R.Top), QPoint(R.Right - 1, R.Bottom - 1)),
                QBrush(ToQColor(AFillColor), ToQtBrushStyle(AFillMode)));
}

void TKRNDrawFunc2d::FillXPoly(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNCustomPolygon2d& APoly,
                               TColor AFillColor, TDrawMode ADrawMode, int AFillMode, int AOutlineWidth,
                               int AOutlineStyle, TColor AOutlineColor) {
  std::vector<QPointF> Pts;
  AppendPolygonPoints(ATrans, APoly, Pts);
  FillDevice(AHDC, Pts, AFillColor, ADrawMode, AFillMode, AOutlineWidth, AOutlineStyle, AOutlineColor);
}

void TKRNDrawFunc2d::DrawArrow(QPainter& AHDC, const TKRNCoordTrans& ATrans, const TKRNCustomLine2d& ALine,
                               double ALineWidth, double AArrowLen, double AArrowAngle, TColor AColor,
                               TDrawMode ADrawMode) {
  DrawXLine(AHDC, ATrans, ALine, ALineWidth, psSolid, AColor, ADrawMode);
  const TKRNVector2d Tip = ALine.EndPt();
  const TKRNVector2d Back = VectorNegate(ALine.EndVector());
  TKRNPolygon2d Head;
  Head.List().AddLinePoint(Tip);
  Head.List().AddLinePoint(VectorAdd(Tip, VectorScale(VectorRotate(Back, AArrowAngle), AArrowLen)));
  Head.List().AddLinePoint(VectorAdd(Tip, VectorScale(VectorRotate(Back, -AArrowAngle), AArrowLen)));
  FillXPoly(AHDC, ATrans, Head, AColor, ADrawMode);
}

// ---- text -------------------------------------------------------------------

namespace {

void InstallFontSubstitutions() {
  static const bool Done = [] {
    const QStringList Cjk = {QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("WenQuanYi Zen Hei"),
                             QStringLiteral("Noto Sans CJK SC"), QStringLiteral("DejaVu Sans")};
    for (const char* Family : {"宋体", "SimSun", "新宋体", "NSimSun", "黑体", "SimHei", "仿宋", "FangSong", "楷体",
                               "KaiTi", "微软雅黑", "Microsoft YaHei", "Arial", "Tahoma", "MS Sans Serif"})
      QFont::insertSubstitutions(QString::fromUtf8(Family), Cjk);
    QFont::insertSubstitutions(QStringLiteral("Courier New"), {QStringLiteral("DejaVu Sans Mono"), QStringLiteral("WenQuanYi Micro Hei Mono")});
    return true;
  }();
  (void)Done;
}

constexpr int ReferencePixels = 256;

// Font names come from files: the cache holds at most this many and starts afresh when
// full (a drawing uses a handful).
constexpr qsizetype MaxCachedFonts = 64;
// Widths of short texts are kept: labels repeat, and shaping is the dear part of an
// item's box. All fonts together keep at most this many and start afresh when full.
constexpr qsizetype MaxCachedWidths = 16384;
constexpr qsizetype MaxCachedTextLength = 128;

// Text widths of one font by text, open addressing on a hash of the characters. An entry
// holds the text's first eight characters, so a probe settles a short text within the
// table and reads a longer one's characters only when all else agrees.
class TWidthTable {
public:
  struct TKey {
    std::size_t Hash;
    std::uint64_t Head[2];
    const QString& Text;
  };
  static TKey KeyOf(const QString& AText) {
    TKey K{Hash(AText), {0, 0}, AText};
    std::memcpy(K.Head, AText.constData(), std::size_t(std::min<qsizetype>(AText.size(), HeadChars)) * 2);
    return K;
  }

  const qreal* Find(const TKey& AKey) const {
    if (FEntries.empty()) return nullptr;
    const qsizetype Size = AKey.Text.size();
    const std::size_t Mask = FEntries.size() - 1;
    for (std::size_t I = AKey.Hash & Mask;; I = (I + 1) & Mask) {
      const TEntry& E = FEntries[I];
      if (E.Size < 0) return nullptr;
      if (E.Hash == AKey.Hash && E.Size == Size && E.Head[0] == AKey.Head[0] && E.Head[1] == AKey.Head[1] &&
          (Size <= HeadChars || E.Text.constData() == AKey.Text.constData() ||
           std::memcmp(E.Text.constData(), AKey.Text.constData(), std::size_t(Size) * 2) == 0))
        return &E.Width;
    }
  }

  void Insert(const TKey& AKey, qreal AWidth) {
    if (2 * (FCount + 1) > FEntries.size()) Grow();
    Place({AKey.Hash, {AKey.Head[0], AKey.Head[1]}, AKey.Text.size(), AWidth, AKey.Text});
  }

  void Clear() {
    FEntries.clear();
    FCount = 0;
  }

private:
  static constexpr qsizetype HeadChars = 8;

  // Eight bytes a step, each folded in with a multiply: quick for short labels.
  static std::size_t Hash(const QString& AText) {
    const auto* P = reinterpret_cast<const unsigned char*>(AText.constData());
    std::size_t N = std::size_t(AText.size()) * 2;
    std::uint64_t H = 0x9E3779B97F4A7C15ull ^ std::uint64_t(N);
    for (; N >= 8; P += 8, N -= 8) {
      std::uint64_t W;
      std::memcpy(&W, P, 8);
      H = (H ^ W) * 0xFF51AFD7ED558CCDull;
      H ^= H >> 32;
    }
    std::uint64_t W = 0;
    std::memcpy(&W, P, N);
    H = (H ^ W) * 0xC4CEB9FE1A85EC53ull;
    return std::size_t(H ^ (H >> 29));
  }
  struct TEntry {
    std::size_t Hash = 0;
    std::uint64_t Head[2] = {0, 0};  // zero after the text's end
    qsizetype Size = -1;             // -1 for a free entry
    qreal Width = 0;
    QString Text;
  };

  void Place(TEntry&& AEntry) {
    const std::size_t Mask = FEntries.size() - 1;
    std::size_t I = AEntry.Hash & Mask;
    while (FEntries[I].Size >= 0) I = (I + 1) & Mask;
    FEntries[I] = std::move(AEntry);
    ++FCount;
  }

  void Grow() {
    std::vector<TEntry> Old(std::max<std::size_t>(64, FEntries.size() * 2));
    Old.swap(FEntries);
    FCount = 0;
    for (TEntry& E : Old)
      if (E.Size >= 0) Place(std::move(E));
  }

  std::vector<TEntry> FEntries;
  std::size_t FCount = 0;
};

struct TMeasuredFont {
  explicit TMeasuredFont(const QFont& AFont) : Metrics(AFont) {}
  QFontMetricsF Metrics;
  TWidthTable Widths;
};

struct TMeasureCache {
  QHash<QString, std::shared_ptr<TMeasuredFont>> Fonts;
  std::shared_ptr<TMeasuredFont> Last;
  QString LastName;
  int LastStyle = -1;
  qsizetype Widths = 0;
};

TMeasureCache& MeasureCache() {
  static TMeasureCache C;
  return C;
}

TMeasuredFont& ReferenceFont(const QString& AFontName, int AFontStyle) {
  TMeasureCache& C = MeasureCache();
  // Loaded texts share one font name string, so the text's address decides most calls.
  if (C.Last && C.LastStyle == AFontStyle &&
      ((C.LastName.constData() == AFontName.constData() && C.LastName.size() == AFontName.size()) ||
       C.LastName == AFontName))
    return *C.Last;
  const QString Key = AFontName + QLatin1Char(';') + QString::number(AFontStyle);
  auto It = C.Fonts.find(Key);
  if (It == C.Fonts.end()) {
    if (C.Fonts.size() >= MaxCachedFonts) {
      C.Fonts.clear();
      C.Widths = 0;
    }
    It = C.Fonts.insert(Key, std::make_shared<TMeasuredFont>(TKRNDrawFunc2d::MakeFont(AFontName, AFontStyle, ReferencePixels)));
  }
  C.Last = *It;
  C.LastName = AFontName;
  C.LastStyle = AFontStyle;
  return *C.Last;
}

qreal ReferenceAdvance(TMeasuredFont& AFont, const QString& AText) {
  if (AText.size() > MaxCachedTextLength) return AFont.Metrics.horizontalAdvance(AText);
  const TWidthTable::TKey Key = TWidthTable::KeyOf(AText);
  if (const qreal* Known = AFont.Widths.Find(Key)) return *Known;
  TMeasureCache& C = MeasureCache();
  if (C.Widths >= MaxCachedWidths) {
    for (const auto& F : std::as_const(C.Fonts)) F->Widths.Clear();
    C.Widths = 0;
  }
  const qreal W = AFont.Metrics.horizontalAdvance(AText);
  AFont.Widths.Insert(Key, W);
  ++C.Widths;
  return W;
}

}  // namespace

qsizetype TKRNDrawFunc2d::CachedFontMetrics() { return MeasureCache().Fonts.size(); }

qsizetype TKRNDrawFunc2d::CachedTextWidths() { return MeasureCache().Widths; }

QFont TKRNDrawFunc2d::MakeFont(const QString& AFontName, int AFontStyle, int APixelSize) {
  InstallFontSubstitutions();
  QFont F(AFontName.isEmpty() ? QStringLiteral("宋体") : AFontName);
  F.setPixelSize(std::max(1, APixelSize));
  F.setBold(AFontStyle & fsBold);
  F.setItalic(AFontStyle & fsItalic);
  F.setStyleStrategy(QFont::NoAntialias);
  F.setHintingPreference(QFont::PreferNoHinting);
  return F;
}

QStringList TKRNDrawFunc2d::SplitLines(const QString& AText) { return AText.split(QStringLiteral("\r\n")); }

double TKRNDrawFunc2d::GetSingleTextWidth(const QString& AText, const QString& AFontName, int AFontStyle,
                                          double AHeight) {
  if (AText.isEmpty()) return 0;
  return ReferenceAdvance(ReferenceFont(AFontName, AFontStyle), AText) * AHeight / ReferencePixels;
}

double TKRNDrawFunc2d::GetWrappedTextMaxWidth(const QString& AText, const QString& AFontName, int AFontStyle,
                                              double AHeight) {
  if (!AText.contains(u'\r')) return GetSingleTextWidth(AText, AFontName, AFontStyle, AHeight);
  double W = 0;
  for (const QString& L : SplitLines(AText)) W = std::max(W, GetSingleTextWidth(L, AFontName, AFontStyle, AHeight));
  return W;
}

int TKRNDrawFunc2d::GetFontHeight(QPainter& AHDC, int AFontSize) {
  const int Dpi = AHDC.device() ? AHDC.device()->logicalDpiY() : 96;
  return int(qint64(AFontSize) * Dpi / 72);
}

std::array<TKRNVector2d, 4> TKRNDrawFunc2d::GetDrawTextCorners(const TKRNVector2d& AInsertPt, double AAngle,
                                                             double AWidth, double AHeight, int ALineCount,
                                                             THorzAlignment AHorzAlignment,
                                                             TVertAlignment AVertAlignment) {
  double Left = 0;
  if (AHorzAlignment == haRightJustify) Left = -AWidth;
  else if (AHorzAlignment == haCenter) Left = -AWidth / 2;
  // The first line is placed by the alignment; each further line adds one height downward.
  double Top = 0;
  if (AVertAlignment == vaBottomJustify) Top = AHeight;
  else if (AVertAlignment == vaCenter) Top = AHeight / 2;
  const double Bottom = Top - AHeight * std::max(1, ALineCount);
  std::array<TKRNVector2d, 4> Corners{{{Left, Bottom}, {Left + AWidth, Bottom}, {Left + AWidth, Top}, {Left, Top}}};
  for (TKRNVector2d& C : Corners) C = VectorAdd(AInsertPt, AAngle == 0 ? C : VectorRotate(C, AAngle));
  return Corners;
}

std::unique_ptr<TKRNPolygon2d> TKRNDrawFunc2d::GetDrawTextPoly(const TKRNVector2d& AInsertPt, double AAngle, double AWidth,
                                              double AHeight, int ALineCount, THorzAlignment AHorzAlignment,
                                              TVertAlignment AVertAlignment) {
  auto P = std::make_unique<TKRNPolygon2d>();
  for (const TKRNVector2d& C :
       GetDrawTextCorners(AInsertPt, AAngle, AWidth, AHeight, ALineCount, AHorzAlignment, AVertAlignment))
    P->List().AddLinePoint(C);
  return P;
}

std::unique_ptr<TKRNPolygon2d> TKRNDrawFunc2d::RectToPoly(const TKRNBox2d& ARect) {
  return std::make_unique<TKRNPolygon2d>(ARect);
}

void TKRNDrawFunc2d::DrawScaleWrapTextVII(QPainter& AHDC, const TKRNCoordTrans& ATrans, const QString& AText,
                                          const TKRNVector2d& AInsertPt, double AAngle, double AHeight,
                                          THorzAlignment AHorzAlignment, TVertAlignment AVertAlignment,
                                          const QString& AFontName, int AFontStyle, TColor AColor, TColor ABackColor,
                                          bool ATransparent, TDrawMode ADrawMode) {
  const double Px = AHeight * ATrans.ZoomFactor();
  if (ADrawMode == dmNOP || !(Px >= 1) || Px > 20000) return;
  const QStringList Lines = SplitLines(AText);
  const QFont F = MakeFont(AFontName, AFontStyle, int(std::lround(Px)));
  const QFontMetricsF M(F);
  double W = 0;
  for (const QString& L : Lines) W = std::max(W, M.horizontalAdvance(L));
  const double H = F.pixelSize();
  double Left = 0;
  if (AHorzAlignment == haRightJustify) Left = -W;
  else if (AHorzAlignment == haCenter) Left = -W / 2;
  double Top = 0;  // device y grows downward
  if (AVertAlignment == vaBottomJustify) Top = -H;
  else if (AVertAlignment == vaCenter) Top = -H / 2;
  TPaintScope S(AHDC, ADrawMode);
  AHDC.translate(Dev(ATrans, AInsertPt));
  if (AAngle != 0) AHDC.rotate(-AAngle * 180 / KRNPi);
  if (!ATransparent) AHDC.fillRect(QRectF(Left, Top, W, H * Lines.size()), ToQColor(ABackColor));
  AHDC.setFont(F);
  AHDC.setPen(ToQColor(AColor));
  const int Flags = Qt::AlignVCenter | Qt::TextSingleLine |
                    (AHorzAlignment == haRightJustify ? Qt::AlignRight
                                                      : AHorzAlignment == haCenter ? Qt::AlignHCenter : Qt::AlignLeft);
  for (int I = 0; I < Lines.size(); ++I) AHDC.drawText(QRectF(Left, Top + H * I, W, H), Flags, Lines[I]);
}

void TKRNDrawFunc2d::DrawScaleTextVII(QPainter& AHDC, const TKRNCoordTrans& ATrans, const QString& AText,
                                      const TKRNVector2d& AInsertPt, double AAngle, double AHeight,
                                      THorzAlignment AHorzAlignment, TVertAlignment AVertAlignment,
                                      const QString& AFontName, int AFontStyle, TColor AColor, TColor ABackColor,
                                      bool ATransparent, TDrawMode ADrawMode) {
  DrawScaleWrapTextVII(AHDC, ATrans, AText, AInsertPt, AAngle, AHeight, AHorzAlignment, AVertAlignment, AFontName,
                       AFontStyle, AColor, ABackColor, ATransparent, ADrawMode);
}

// ---- trimming ---------------------------------------------------------------

void TKRNDrawFunc2d::TrimEdge(TKRNCustomLine2d& AEdge, double AStartTrim, double AEndTrim) {
  const double Len = AEdge.Length();
  TKRNVector2d S, E;
  if (AStartTrim + AEndTrim >= Len) {
    S = E = AEdge.MiddlePoint();
  } else {
    TKRNVector2d C;
    if (AEdge.IsArcType() && AEdge.Radius() != 0 &&
        TKRNArc2d::CalcCenterPt(AEdge.StartPt(), AEdge.EndPt(), AEdge.Radius(), AEdge.ArcType(), C)) {
      const double Sense = ArcTypeIsClockwise(AEdge.ArcType()) ? -1 : 1;
      S = VectorAdd(C, VectorRotate(VectorSub(AEdge.StartPt(), C), Sense * AStartTrim / AEdge.Radius()));
      E = VectorAdd(C, VectorRotate(VectorSub(AEdge.EndPt(), C), -Sense * AEndTrim / AEdge.Radius()));
    } else {
      const TKRNVector2d D = VectorNormalized(VectorSub(AEdge.EndPt(), AEdge.StartPt()));
      S = VectorAdd(AEdge.StartPt(), VectorScale(D, AStartTrim));
      E = VectorSub(AEdge.EndPt(), VectorScale(D, AEndTrim));
    }
  }
  if (!TKRNPositionFunc2d::SetExactVertex(AEdge, S, E)) {
    AEdge.SetStartPt(S);
    AEdge.SetEndPt(E);
  }
}
