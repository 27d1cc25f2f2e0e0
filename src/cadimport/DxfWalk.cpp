#include "DxfWalk.h"

#include "CADConverterIntf.h"
#include "DxfModel.h"
#include "KRNPolygon2d.h"

#include <cmath>
#include <unordered_map>
#include <unordered_set>

namespace dxf {

double UnitScale(int AInsUnits) {
  switch (AInsUnits) {
    case 1: return 25.4;         // inches
    case 2: return 304.8;        // feet
    case 3: return 1609344.0;    // miles
    case 5: return 10.0;         // centimetres
    case 6: return 1000.0;       // metres
    case 7: return 1000000.0;    // kilometres
    case 8: return 25.4e-6;      // microinches
    case 9: return 0.0254;       // mils
    case 10: return 914.4;       // yards
    case 11: return 1e-7;        // angstroms
    case 12: return 1e-6;        // nanometres
    case 13: return 1e-3;        // microns
    case 14: return 100.0;       // decimetres
    case 15: return 10000.0;     // decametres
    case 16: return 100000.0;    // hectometres
    default: return 1.0;         // unitless, millimetres, and what is not known
  }
}

namespace {

// x' = A x + C y + E, y' = B x + D y + F
struct TXf {
  double A = 1, B = 0, C = 0, D = 1, E = 0, F = 0;
  TKRNVector2d operator()(double X, double Y) const { return {A * X + C * Y + E, B * X + D * Y + F}; }
  TXf operator*(const TXf& R) const {
    return {A * R.A + C * R.B, B * R.A + D * R.B, A * R.C + C * R.D, B * R.C + D * R.D, A * R.E + C * R.F + E,
            B * R.E + D * R.F + F};
  }
  double Det() const { return A * D - B * C; }
  // Equal scale on both axes and no shear: circles stay circles.
  bool Similar() const {
    const double SX = std::hypot(A, B), SY = std::hypot(C, D);
    return std::fabs(SX - SY) <= 1e-9 * std::max(SX, SY) && std::fabs(A * C + B * D) <= 1e-9 * SX * SY;
  }
  double Scale() const { return std::sqrt(std::fabs(Det())); }
  static TXf Translate(double X, double Y) { return {1, 0, 0, 1, X, Y}; }
  static TXf Rotate(double ARad) { return {std::cos(ARad), std::sin(ARad), -std::sin(ARad), std::cos(ARad), 0, 0}; }
  static TXf Scaling(double SX, double SY) { return {SX, 0, 0, SY, 0, 0}; }
};

const TXf kMirrorX{-1, 0, 0, 1, 0, 0};

struct TCtx {
  TXf Xf;
  int InsertLayer = -1;  // the layer that entities on "0" inside a block take
  TColor BlockColor = 0xFFFFFF;
  int BlockLineType = -1;
  int Depth = 0;
};

constexpr int kMaxDepth = 32;

class TWalker {
public:
  TWalker(const TDoc& ADoc, ICADConverterIntf& AConverter, const TDxfOptions& AOptions, TDxfSummary& ASummary)
      : FDoc(ADoc), FConv(AConverter), FOptions(AOptions), FSummary(ASummary) {}

  void Run() {
    const int Count = int(FDoc.Ents.size());
    // before the converter empties anything: a file whose blocks and arrays expand
    // past the limit is refused as a whole
    std::unordered_map<std::string, qint64> Memo;
    qint64 Expanded = 0;
    for (const TEnt& E : FDoc.Ents) {
      Expanded += Expand(E, Memo, 0);
      if (Expanded > FOptions.MaxItems)
        throw EDxfError(QStringLiteral("展开块和阵列后的图元超过 %1 个，文件不能导入").arg(FOptions.MaxItems));
    }
    FConv.beginConvert(Count);
    TCtx Root;
    const double Unit = UnitScale(FDoc.InsUnits) * FConv.GetViewportImportScale();
    Root.Xf = TXf::Scaling(Unit, Unit);
    for (int I = 0; I < Count; ++I) {
      Emit(FDoc.Ents[size_t(I)], Root);
      if ((I & 4095) == 4095 || I == Count - 1) {
        const double Pos = 50.0 + 50.0 * (I + 1) / Count;
        FConv.RefreshProgressBar(Pos);
        if (FOptions.Progress) FOptions.Progress(Pos);
      }
    }
    FConv.endConvert();
  }

private:
  // How many build calls an entity makes at most, blocks and arrays expanded; a block
  // that inserts itself counts as nothing below the loop.
  qint64 Expand(const TEnt& E, std::unordered_map<std::string, qint64>& AMemo, int ADepth) {
    if (E.Kind == TKind::Hatch) return qint64(E.Ext ? E.Ext->Loops.size() : 0);
    if (E.Kind != TKind::Insert && E.Kind != TKind::Dimension) return 1;
    qint64 N = E.Ext ? qint64(E.Ext->Attribs.size()) : 0;
    const std::string Key = E.Text.toUpper().toStdString();
    const auto It = FDoc.Blocks.find(Key);
    if (It == FDoc.Blocks.end() || ADepth >= kMaxDepth) return N;
    qint64 Inner;
    if (const auto M = AMemo.find(Key); M != AMemo.end()) {
      Inner = M->second;
    } else {
      AMemo[Key] = 0;  // a loop back to this block adds nothing
      Inner = 0;
      for (const TEnt& Sub : It->second.Ents) {
        Inner += Expand(Sub, AMemo, ADepth + 1);
        if (Inner > FOptions.MaxItems) break;
      }
      AMemo[Key] = Inner;
    }
    const qint64 Copies = E.Kind == TKind::Dimension ? 1 : qint64(E.Degree) * E.Rows;
    return N + std::min<qint64>(FOptions.MaxItems + 1, Inner * Copies);
  }

  void Warn(const QString& AText) {
    if (!FSummary.Warnings.contains(AText) && FSummary.Warnings.size() < 50) FSummary.Warnings << AText;
  }
  void Count() {
    if (++FSummary.Calls > FOptions.MaxItems)
      throw EDxfError(QStringLiteral("展开块和阵列后的图元超过 %1 个，文件不能导入").arg(FOptions.MaxItems));
  }
  // Group 420 is 0x00RRGGBB; items take 0x00BBGGRR.
  static TColor FromTrueColor(int ARgb) {
    return TColor((ARgb >> 16) & 0xFF) | TColor((ARgb >> 8) & 0xFF) << 8 | TColor(ARgb & 0xFF) << 16;
  }
  TColor ColorOf(const TEnt& E, const TCtx& ACtx, int ALayer) const {
    if (E.TrueColor >= 0) return FromTrueColor(E.TrueColor);
    if (E.Aci == 0) return ACtx.BlockColor;
    if (E.Aci >= 1 && E.Aci <= 255) return AciColor(E.Aci);
    const TLayerInfo& L = FDoc.Layers[size_t(ALayer)];
    if (L.TrueColor >= 0) return FromTrueColor(L.TrueColor);
    return AciColor(L.Aci);
  }
  int LineTypeOf(const TEnt& E, const TCtx& ACtx, int ALayer) const {
    const int LT = E.LineType == -1 ? FDoc.Layers[size_t(ALayer)].LineType : E.LineType == -2 ? ACtx.BlockLineType : E.LineType;
    if (LT < 0 || LT >= int(FDoc.LineTypes.size())) return psSolid;
    const QString N = FDoc.LineTypes[size_t(LT)].toUpper();
    if (N.contains(QLatin1String("DASHDOTDOT")) || N.contains(QLatin1String("DIVIDE")) || N.contains(QLatin1String("PHANTOM")))
      return psDashDotDot;
    if (N.contains(QLatin1String("DASHDOT")) || N.contains(QLatin1String("CENTER"))) return psDashDot;
    if (N.contains(QLatin1String("DASH")) || N.contains(QLatin1String("HIDDEN"))) return psDash;
    if (N.contains(QLatin1String("DOT"))) return psDot;
    return psSolid;
  }

  // A path of points and bulges into the converter's polyline, arcs kept where the
  // transform keeps circles, else turned into points.
  void Path(const std::vector<TVtx>& APts, bool AClosed, const TXf& AXf, TKRNLines2d& AOut) const {
    // a path that ends where it starts is closed already
    if (AClosed && APts.size() > 1 && APts.back().X == APts.front().X && APts.back().Y == APts.front().Y)
      AClosed = false;
    const bool Similar = AXf.Similar();
    const bool Flip = AXf.Det() < 0;
    const size_t N = APts.size();
    TKRNVertex2dList& L = AOut.List();
    for (size_t I = 0; I < N; ++I) {
      const TVtx& V = APts[I];
      const bool HasNext = I + 1 < N || AClosed;
      const TVtx& W = APts[(I + 1) % N];
      const TKRNVector2d P = AXf(V.X, V.Y);
      const double Chord = std::hypot(W.X - V.X, W.Y - V.Y);
      if (!HasNext || V.Bulge == 0 || Chord == 0 || !std::isfinite(V.Bulge)) {
        L.AddLinePoint(P);
        continue;
      }
      const double Sweep = 4 * std::atan(std::fabs(V.Bulge));  // 0..2 pi
      if (Similar) {
        const double R = Chord / (2 * std::sin(Sweep / 2)) * AXf.Scale();
        const bool Ccw = (V.Bulge > 0) != Flip;
        const bool Large = Sweep > M_PI;
        L.AddArcPoint(P, Ccw ? (Large ? atACL : atACS) : (Large ? atCL : atCS), R);
        continue;
      }
      // the arc's points in the entity's own coordinates, then transformed
      const double Half = Sweep / 2, R = Chord / (2 * std::sin(Half));
      const double MX = (V.X + W.X) / 2, MY = (V.Y + W.Y) / 2;
      const double NX = -(W.Y - V.Y) / Chord, NY = (W.X - V.X) / Chord;  // left normal
      const double Dist = R * std::cos(Half) * (V.Bulge > 0 ? 1 : -1);
      const double CX = MX + NX * Dist, CY = MY + NY * Dist;
      const double A0 = std::atan2(V.Y - CY, V.X - CX);
      const int Steps = std::max(2, int(std::ceil(Sweep / (M_PI / 32))));
      for (int K = 0; K < Steps; ++K) {
        const double T = A0 + (V.Bulge > 0 ? 1 : -1) * Sweep * K / Steps;
        L.AddLinePoint(AXf(CX + R * std::cos(T), CY + R * std::sin(T)));
      }
    }
    if (AClosed && N > 0) L.AddLinePoint(AXf(APts[0].X, APts[0].Y));
  }

  void PolyOut(const QString& ALayer, const std::vector<TVtx>& APts, bool AClosed, const TXf& AXf, int APen, TColor AColor) {
    if (APts.size() < 2) return;
    TKRNLines2d Lines;
    Path(APts, AClosed, AXf, Lines);
    Count();
    FConv.BuildPolyLine(ALayer, Lines, APen, AColor, 0, -1, -1, FConv.GetCurrentScale());
  }

  static std::vector<TVtx> ArcPoints(double CX, double CY, double R, double A0, double ASweep) {
    const int Steps = std::max(2, int(std::ceil(std::fabs(ASweep) / (M_PI / 32))));
    std::vector<TVtx> P;
    P.reserve(size_t(Steps) + 1);
    for (int K = 0; K <= Steps; ++K) {
      const double T = A0 + ASweep * K / Steps;
      P.push_back({CX + R * std::cos(T), CY + R * std::sin(T), 0});
    }
    return P;
  }

  // Knots that fit the points and the degree, with more points than the degree.
  static bool HasSplineCurve(const TEnt& E) {
    const size_t N = E.Pts.size();
    return E.Ext && N >= 2 && E.Degree >= 1 && size_t(E.Degree) < N && E.Ext->Knots.size() == N + size_t(E.Degree) + 1;
  }

  static std::vector<TVtx> SplinePoints(const TEnt& E) {
    const TEntExtra* X = E.Ext.get();
    const int P = E.Degree;
    const size_t N = E.Pts.size();
    if (!HasSplineCurve(E)) {
      // no curve: the fit points, else the control polygon
      if (X && X->Fit.size() >= 2) return X->Fit;
      return E.Pts;
    }
    const std::vector<double>& U = X->Knots;
    const bool Rational = X->Weights.size() == N;
    const double T0 = U[size_t(P)], T1 = U[N];
    if (!(T1 > T0)) return E.Pts;
    const size_t Samples = std::min<size_t>(100000, std::max<size_t>(8, 8 * N));
    std::vector<TVtx> Out;
    Out.reserve(Samples + 1);
    std::vector<double> DX(size_t(P) + 1), DY(size_t(P) + 1), DW(size_t(P) + 1);
    for (size_t S = 0; S <= Samples; ++S) {
      const double T = S == Samples ? T1 : T0 + (T1 - T0) * double(S) / double(Samples);
      size_t K = size_t(P);
      while (K + 1 < N && U[K + 1] <= T) ++K;
      for (int J = 0; J <= P; ++J) {
        const size_t I = K - size_t(P) + size_t(J);
        const double W = Rational ? X->Weights[I] : 1.0;
        DX[size_t(J)] = E.Pts[I].X * W;
        DY[size_t(J)] = E.Pts[I].Y * W;
        DW[size_t(J)] = W;
      }
      for (int R = 1; R <= P; ++R)
        for (int J = P; J >= R; --J) {
          const size_t I = K - size_t(P) + size_t(J);
          const double Den = U[I + size_t(P) - size_t(R) + 1] - U[I];
          const double A = Den == 0 ? 0 : (T - U[I]) / Den;
          DX[size_t(J)] = (1 - A) * DX[size_t(J) - 1] + A * DX[size_t(J)];
          DY[size_t(J)] = (1 - A) * DY[size_t(J) - 1] + A * DY[size_t(J)];
          DW[size_t(J)] = (1 - A) * DW[size_t(J) - 1] + A * DW[size_t(J)];
        }
      const double W = DW[size_t(P)] == 0 ? 1 : DW[size_t(P)];
      Out.push_back({DX[size_t(P)] / W, DY[size_t(P)] / W, 0});
    }
    return Out;
  }

  void TextOut(const QString& ALayer, const TEnt& E, const TCtx& ACtx, TColor AColor, QString AText) {
    // the diameter mark pair becomes the code character of the region's fonts
    static const QString Pair = QStringLiteral("\u00A6\u00B5");
    if (AText.contains(Pair)) {
      const QChar Code = FOptions.RegionCode == 6 ? QChar(u'P') : FOptions.RegionCode == 13 ? QChar(u'A') : QChar(u'\u03A6');
      AText.replace(Pair, QString(Code) + QChar(1));
    }
    AText = AText.trimmed();
    if (AText.isEmpty()) return;
    const TXf Xf = E.Ocs ? ACtx.Xf * kMirrorX : ACtx.Xf;
    THorzAlignment H = haLeftJustify;
    TVertAlignment V = vaBottomJustify;
    double X = E.A[0], Y = E.A[1], Rot = E.A[3];
    if (E.Kind == TKind::Text) {
      const int HA = E.HAlign, VA = E.VAlign;
      H = HA == 1 || HA == 4 ? haCenter : HA == 2 ? haRightJustify : haLeftJustify;
      V = HA == 4 || VA == 2 ? vaCenter : VA == 3 ? vaTopJustify : vaBottomJustify;
      if ((HA != 0 || VA != 0) && HA != 3 && HA != 5) {
        X = E.A[5];
        Y = E.A[6];
      }
      Rot = Rot * M_PI / 180;
    } else {
      const int At = E.HAlign - 1;
      V = At / 3 == 0 ? vaTopJustify : At / 3 == 1 ? vaCenter : vaBottomJustify;
      H = At % 3 == 0 ? haLeftJustify : At % 3 == 1 ? haCenter : haRightJustify;
    }
    const TKRNVector2d P = Xf(X, Y);
    const TKRNVector2d Dir = Xf(X + std::cos(Rot), Y + std::sin(Rot));
    const TKRNVector2d Up = Xf(X - std::sin(Rot), Y + std::cos(Rot));
    // a height 2.5 stays 2.5 through a rotation, not 2.5000000001
    const double Height = std::round(E.A[2] * (Xf.Similar() ? Xf.Scale() : std::hypot(Up.X - P.X, Up.Y - P.Y)) * 1e9) / 1e9;
    Count();
    FConv.BuildText(ALayer, AText, AColor, P, E.Kind == TKind::Text ? E.A[4] : 1.0, Height,
                    std::atan2(Dir.Y - P.Y, Dir.X - P.X), H, V, -1, -1, FConv.GetCurrentScale());
  }

  void Block(const QString& AName, const TEnt& AInsert, const TCtx& ACtx, int ALayer, TColor AColor, int ALineType) {
    const auto It = FDoc.Blocks.find(AName.toUpper().toStdString());
    if (It == FDoc.Blocks.end()) {
      Warn(QStringLiteral("块 %1 不存在，引用它的插入未导入").arg(AName));
      return;
    }
    const TBlock& B = It->second;
    if (ACtx.Depth >= kMaxDepth) {
      Warn(QStringLiteral("块嵌套超过 %1 层，更深的插入未导入").arg(kMaxDepth));
      return;
    }
    const std::string Key = It->first;
    if (!FActive.insert(Key).second) {
      Warn(QStringLiteral("块 %1 插入了它自己（循环引用），这一层插入未导入").arg(B.Name));
      return;
    }
    TCtx Child;
    Child.Depth = ACtx.Depth + 1;
    Child.InsertLayer = ALayer;
    Child.BlockColor = AColor;
    Child.BlockLineType = ALineType < 0 ? -1 : ALineType;
    const TXf Base = AInsert.Ocs ? ACtx.Xf * kMirrorX : ACtx.Xf;
    const bool Dimension = AInsert.Kind == TKind::Dimension;
    const double Rot = Dimension ? 0 : AInsert.A[4] * M_PI / 180;
    const int Cols = Dimension ? 1 : AInsert.Degree, Rows = Dimension ? 1 : AInsert.Rows;
    if (qint64(Cols) * Rows * qint64(B.Ents.size()) + FSummary.Calls > FOptions.MaxItems) {
      FActive.erase(Key);
      throw EDxfError(QStringLiteral("展开块和阵列后的图元超过 %1 个，文件不能导入").arg(FOptions.MaxItems));
    }
    for (int R = 0; R < Rows; ++R)
      for (int C = 0; C < Cols; ++C) {
        const double OX = Dimension ? 0 : C * AInsert.A[5], OY = Dimension ? 0 : R * AInsert.A[6];
        const double IX = Dimension ? 0 : AInsert.A[0], IY = Dimension ? 0 : AInsert.A[1];
        const double SX = Dimension ? 1 : AInsert.A[2], SY = Dimension ? 1 : AInsert.A[3];
        const TXf Cell = TXf::Translate(IX, IY) * TXf::Rotate(Rot) * TXf::Translate(OX, OY) * TXf::Scaling(SX, SY) *
                         TXf::Translate(-B.BaseX, -B.BaseY);
        Child.Xf = Base * Cell;
        for (const TEnt& E : B.Ents) Emit(E, Child);
      }
    FActive.erase(Key);
  }

  void Emit(const TEnt& E, const TCtx& ACtx) {
    const int Layer = E.Layer == 0 && ACtx.InsertLayer >= 0 ? ACtx.InsertLayer : E.Layer;
    const QString& LayerName = FDoc.Layers[size_t(Layer)].Name;
    const TColor Color = ColorOf(E, ACtx, Layer);
    const int Pen = LineTypeOf(E, ACtx, Layer);
    if (E.Kind != TKind::Insert && E.Kind != TKind::Dimension)
      FConv.buildCADLayer(LayerName, true, Color);
    const TXf Xf = E.Ocs ? ACtx.Xf * kMirrorX : ACtx.Xf;
    const double Cs = FConv.GetCurrentScale();
    switch (E.Kind) {
      case TKind::Line:
        Count();
        FConv.BuildLine(LayerName, Xf(E.A[0], E.A[1]), Xf(E.A[2], E.A[3]), Pen, Color, 0, -1, -1, Cs);
        break;
      case TKind::Point:
        Count();
        FConv.BuildPoint(LayerName, Xf(E.A[0], E.A[1]), Color, -1, -1, Cs);
        break;
      case TKind::Circle:
        if (Xf.Similar()) {
          Count();
          FConv.BuildCircle(LayerName, Xf(E.A[0], E.A[1]), E.A[2] * Xf.Scale(), Pen, Color, 0, -1, -1, Cs);
        } else {
          PolyOut(LayerName, ArcPoints(E.A[0], E.A[1], E.A[2], 0, 2 * M_PI), false, Xf, Pen, Color);
        }
        break;
      case TKind::Arc: {
        double A0 = E.A[3] * M_PI / 180, A1 = E.A[4] * M_PI / 180;
        double Sweep = std::fmod(A1 - A0, 2 * M_PI);
        if (Sweep <= 1e-12) Sweep += 2 * M_PI;
        if (!Xf.Similar()) {
          PolyOut(LayerName, ArcPoints(E.A[0], E.A[1], E.A[2], A0, Sweep), false, Xf, Pen, Color);
          break;
        }
        const TKRNVector2d C = Xf(E.A[0], E.A[1]);
        if (Sweep >= 2 * M_PI - 1e-12) {
          Count();
          FConv.BuildCircle(LayerName, C, E.A[2] * Xf.Scale(), Pen, Color, 0, -1, -1, Cs);
          break;
        }
        const bool Ccw = Xf.Det() > 0, Large = Sweep > M_PI;
        Count();
        FConv.BuildArc(LayerName, C, Xf(E.A[0] + E.A[2] * std::cos(A0), E.A[1] + E.A[2] * std::sin(A0)),
                       Xf(E.A[0] + E.A[2] * std::cos(A1), E.A[1] + E.A[2] * std::sin(A1)), E.A[2] * Xf.Scale(),
                       Ccw ? (Large ? atACL : atACS) : (Large ? atCL : atCS), Pen, Color, 0, -1, -1, Cs);
        break;
      }
      case TKind::Poly:
        PolyOut(LayerName, E.Pts, E.Closed, Xf, Pen, Color);
        break;
      case TKind::Spline:
        PolyOut(LayerName, SplinePoints(E), E.Closed && !HasSplineCurve(E), Xf, Pen, Color);
        break;
      case TKind::Ellipse: {
        // the minor axis turns the other way under a downward extrusion
        const double MX = E.A[2], MY = E.A[3], Ratio = E.A[4];
        const double NX = E.Ocs ? MY : -MY, NY = E.Ocs ? -MX : MX;
        // parameters of any size: taken modulo a turn
        double T0 = std::fmod(E.A[5], 2 * M_PI), T1 = std::fmod(E.A[6], 2 * M_PI);
        if (E.A[6] - E.A[5] >= 2 * M_PI) T1 = T0 + 2 * M_PI;
        else if (T1 <= T0) T1 += 2 * M_PI;
        const int Steps = std::max(2, int(std::ceil(std::min(T1 - T0, 2 * M_PI) / (M_PI / 32))));
        std::vector<TVtx> P;
        P.reserve(size_t(Steps) + 1);
        for (int K = 0; K <= Steps; ++K) {
          const double T = T0 + (T1 - T0) * K / Steps;
          P.push_back({E.A[0] + MX * std::cos(T) + NX * Ratio * std::sin(T), E.A[1] + MY * std::cos(T) + NY * Ratio * std::sin(T), 0});
        }
        PolyOut(LayerName, P, false, ACtx.Xf, Pen, Color);
        break;
      }
      case TKind::Text:
        TextOut(LayerName, E, ACtx, Color, ReplaceTextCodes(E.Text));
        break;
      case TKind::MText:
        TextOut(LayerName, E, ACtx, Color, ReplaceTextCodes(StripMTextFormat(E.Text)));
        break;
      case TKind::Solid: {
        std::vector<TVtx> P = {{E.A[0], E.A[1], 0}, {E.A[2], E.A[3], 0}, {E.A[6], E.A[7], 0}};
        if (E.A[6] != E.A[4] || E.A[7] != E.A[5]) P.push_back({E.A[4], E.A[5], 0});
        PolyOut(LayerName, P, true, Xf, Pen, Color);
        break;
      }
      case TKind::Hatch: {
        TKRNMultiPolygon2d Border;
        for (const TLoop& Loop : E.Ext->Loops) {
          PolyOut(LayerName, Loop, true, Xf, Pen, Color);
          TKRNLines2d Lines;
          Path(Loop, true, Xf, Lines);
          Border.Add(new TKRNPolygon2d(Lines));
        }
        FConv.BuildHatch(LayerName, Border, 0, QString(), Pen, Color, 0, -1, -1, Cs, {}, {});
        break;
      }
      case TKind::Insert:
      case TKind::Dimension:
        Block(E.Text, E, ACtx, Layer, Color, E.LineType == -1 ? FDoc.Layers[size_t(Layer)].LineType : E.LineType);
        if (E.Ext)
          for (const TEnt& A : E.Ext->Attribs) Emit(A, ACtx);
        break;
    }
  }

  const TDoc& FDoc;
  ICADConverterIntf& FConv;
  const TDxfOptions& FOptions;
  TDxfSummary& FSummary;
  std::unordered_set<std::string> FActive;
};

}  // namespace

void WalkDoc(const TDoc& ADoc, ICADConverterIntf& AConverter, const TDxfOptions& AOptions, TDxfSummary& ASummary) {
  ASummary.UnitScale = UnitScale(ADoc.InsUnits);
  TWalker(ADoc, AConverter, AOptions, ASummary).Run();
}

}  // namespace dxf
