#include "KRNPolygon2d.h"

#include "KRN2dObjectPool.h"
#include "KRNExceptions.h"

#include <algorithm>
#include <cstdint>

// ---- text form --------------------------------------------------------------

std::string KRNVertexListAsString(const TKRNVertex2dList& AList) {
  std::string S;
  for (int I = 0; I < AList.Count(); ++I) {
    S += "(" + AList[I]->AsXPoint() + ")";
    if (I + 1 < AList.Count()) S += ", ";
  }
  return S;
}

// outside: "(" opens a group; inside: three comma-ended numbers, then the arc word up to ")".
void KRNLoadVertexListFromString(TKRNVertex2dList& AList, const std::string& AText) {
  AList.Clear();
  bool Inside = false;
  int Field = 0;
  double Values[3] = {0, 0, 0};
  std::string Buf;
  for (const char C : AText) {
    if (!Inside) {
      if (C == '(') {
        Inside = true;
        Field = 0;
        Buf.clear();
      }
      continue;
    }
    if (Field < 3) {
      if (C == ',') {
        if (!KRNParseFloat(Buf, Values[Field])) throw EKRNException(SKRNPolygonStringError);
        ++Field;
        Buf.clear();
      } else {
        Buf += C;
      }
    } else if (C == ')') {
      const TKRNArcType T = ArcTypeFromString(Buf.substr(Buf.find_first_not_of(' ') == std::string::npos
                                                             ? Buf.size()
                                                             : Buf.find_first_not_of(' ')));
      AList.AddArcPoint({Values[0], Values[1]}, T, T == atLine ? 0 : Values[2]);
      Inside = false;
    } else {
      Buf += C;
    }
  }
}

// Removes repeated vertices and vertices between two parallel straight edges.
static void NormalizeList(TKRNVertex2dList& L, double AEpsilon, bool AClosed, std::vector<int>* AIndexes) {
  std::vector<int> Idx(static_cast<size_t>(L.Count()));
  for (int I = 0; I < L.Count(); ++I) Idx[size_t(I)] = I;
  auto Remove = [&](int I) {
    L.Delete(I);
    Idx.erase(Idx.begin() + I);
  };
  if (AClosed && L.Count() > 2 && PointIsSame(L.Points(L.Count() - 1), L.Points(0), AEpsilon)) Remove(L.Count() - 1);
  auto Straight = [&](int I) { return !(L[I]->VertexType() == vtArc && L[I]->IsArc()); };
  for (int I = L.Count() - 1; I >= 0 && L.Count() > (AClosed ? 2 : 1); --I) {
    if (I >= L.Count()) continue;
    const int N = L.Count();
    const int Next = I + 1 < N ? I + 1 : (AClosed ? 0 : -1);
    if (Next >= 0 && Next != I && PointIsSame(L.Points(I), L.Points(Next), AEpsilon)) {
      Remove(I);
      continue;
    }
    const int Prev = I > 0 ? I - 1 : (AClosed ? N - 1 : -1);
    if (Prev < 0 || Next < 0 || Prev == Next) continue;
    if (!Straight(Prev) || !Straight(I)) continue;
    const TKRNVector2d D1 = VectorSub(L.Points(I), L.Points(Prev));
    const TKRNVector2d D2 = VectorSub(L.Points(Next), L.Points(I));
    if (VectorIsParallel(D1, D2, AEpsilon)) Remove(I);
  }
  if (AIndexes) *AIndexes = std::move(Idx);
}

// ---- the base ---------------------------------------------------------------

TKRNBox2d TKRNCustomPolygon2d::Box() const {
  TKRNBox2d B{};
  for (int I = 0; I < GetCount(); ++I) {
    const TKRNPtr<TKRNCustomLine2d> E = EdgeLine(I);
    B = I == 0 ? E->Box() : BoxUnion(B, E->Box());
  }
  return B;
}

double TKRNCustomPolygon2d::SignedArea() const {
  double A = 0;
  for (int I = 0; I < GetCount(); ++I) A += EdgeLine(I)->DropDownArea();
  return A;
}

std::string TKRNCustomPolygon2d::AsString() const {
  TKRNVertex2dList L;
  for (int I = 0; I < GetCount(); ++I) {
    const TKRNPtr<TKRNCustomLine2d> E = EdgeLine(I);
    L.AddArcPoint(E->StartPt(), E->ArcType(), E->Radius());
  }
  return KRNVertexListAsString(L);
}

double TKRNCustomPolygon2d::LengthBetweenY(double AY1, double AY2, bool ANeedUpBorderLine,
                                           bool ANeedBottomBorderLine) const {
  const double Lo = std::min(AY1, AY2), Hi = std::max(AY1, AY2);
  double Sum = 0;
  for (int I = 0; I < GetCount(); ++I) {
    const TKRNPtr<TKRNCustomLine2d> E = EdgeLine(I);
    const bool Flat = !E->IsArcType() && SameDouble(E->StartPt().Y, E->EndPt().Y);
    if (Flat && SameDouble(E->StartPt().Y, Hi)) Sum += ANeedUpBorderLine ? E->Length() : 0;
    else if (Flat && SameDouble(E->StartPt().Y, Lo)) Sum += ANeedBottomBorderLine ? E->Length() : 0;
    else Sum += E->LengthBetweenY(Lo, Hi, false);
  }
  return Sum;
}

double TKRNCustomPolygon2d::Perimeter() const {
  double P = 0;
  for (int I = 0; I < GetCount(); ++I) P += EdgeLine(I)->Length();
  return P;
}

TKRNEdge2dRef TKRNCustomPolygon2d::Edge(int AIndex) const {
  TKRNPtr<TKRNCustomLine2d> L = EdgeLine(AIndex);
  return L ? KRN2dObjectPool().GetEdge(L.release()) : nullptr;
}

void TKRNCustomPolygon2d::SetClockWise(bool AValue) {
  if (GetClockwise() != AValue) Inverse();
}

bool TKRNCustomPolygon2d::IsOnVertexPoint(const TKRNVector2d& APoint, double AEpsilon) const {
  for (int I = 0; I < GetCount(); ++I)
    if (PointIsSame(EdgeLine(I)->StartPt(), APoint, AEpsilon)) return true;
  return false;
}

template <typename T>
static bool ReadFields(TKRNStream& AStream, T& AFields) {
  return AStream.Read(&AFields, sizeof AFields) == sizeof AFields;
}

// ---- ortho rectangle --------------------------------------------------------

TKRNOrthoRectangle2d::TKRNOrthoRectangle2d(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt,
                                           bool AClockwise) {
  const TKRNBox2d B = BoxOfPoints(AStartPt, AEndPt);
  FStartPt = B.StartPt;
  FEndPt = B.EndPt;
  FClockwise = AClockwise;
}

TKRNVector2d TKRNOrthoRectangle2d::Corner(int AIndex) const {
  // Anticlockwise: min, (max, min), max, (min, max); clockwise walks the other way.
  int I = ((AIndex % 4) + 4) % 4;
  if (FClockwise) I = (4 - I) % 4;
  const bool HighX = I == 1 || I == 2, HighY = I >= 2;
  return {HighX ? FEndPt.X : FStartPt.X, HighY ? FEndPt.Y : FStartPt.Y};
}

TKRNPtr<TKRNCustomLine2d> TKRNOrthoRectangle2d::EdgeLine(int AIndex) const {
  if (AIndex < 0 || AIndex > 3) return nullptr;
  return KRNMakeSegment(Corner(AIndex), Corner(AIndex + 1), 0, atLine);
}

bool TKRNOrthoRectangle2d::LoadFromStream(TKRNStream& AStream) {
  struct {
    unsigned char Clockwise;
    TKRNVector2d S, E;
  } F;
  if (!ReadFields(AStream, F.Clockwise) || !ReadFields(AStream, F.S) || !ReadFields(AStream, F.E)) return false;
  FClockwise = F.Clockwise != 0;
  FStartPt = F.S;
  FEndPt = F.E;
  return true;
}

void TKRNOrthoRectangle2d::SaveToStream(TKRNStream& AStream) const {
  AStream.WriteValue<unsigned char>(FClockwise);
  AStream.WriteValue(FStartPt);
  AStream.WriteValue(FEndPt);
}

std::string TKRNOrthoRectangle2d::AsString() const {
  return "(" + KRNFloatG(FStartPt.X) + "," + KRNFloatG(FStartPt.Y) + "," + KRNFloatG(FEndPt.X) + "," +
         KRNFloatG(FEndPt.Y) + ")";
}

std::unique_ptr<TKRNCustomPolygon2d> TKRNOrthoRectangle2d::BaseClone() const {
  return std::make_unique<TKRNOrthoRectangle2d>(FStartPt, FEndPt, FClockwise);
}

void TKRNOrthoRectangle2d::Scale(double AScaleFactor) {
  const TKRNBox2d B = BoxOfPoints(VectorScale(FStartPt, AScaleFactor), VectorScale(FEndPt, AScaleFactor));
  FStartPt = B.StartPt;
  FEndPt = B.EndPt;
}

// ---- rotated rectangle ------------------------------------------------------

TKRNRectangle2d::TKRNRectangle2d(const TKRNVector2d& ACenterPt, double AHalfWidth, double AHalfHeight,
                                 double AAngle, bool AClockwise)
    : FAngle(AAngle), FCenterPt(ACenterPt), FHalfHeight(AHalfHeight), FHalfWidth(AHalfWidth) {
  FClockwise = AClockwise;
}

TKRNVector2d TKRNRectangle2d::Corner(int AIndex) const {
  int I = ((AIndex % 4) + 4) % 4;
  if (FClockwise) I = (4 - I) % 4;
  const double SX = (I == 1 || I == 2) ? 1 : -1, SY = I >= 2 ? 1 : -1;
  return VectorAdd(FCenterPt, VectorRotate({SX * FHalfWidth, SY * FHalfHeight}, FAngle));
}

TKRNPtr<TKRNCustomLine2d> TKRNRectangle2d::EdgeLine(int AIndex) const {
  if (AIndex < 0 || AIndex > 3) return nullptr;
  return KRNMakeSegment(Corner(AIndex), Corner(AIndex + 1), 0, atLine);
}

bool TKRNRectangle2d::LoadFromStream(TKRNStream& AStream) {
  unsigned char Cw;
  double A, HH, HW;
  TKRNVector2d C;
  if (!ReadFields(AStream, Cw) || !ReadFields(AStream, A) || !ReadFields(AStream, C) || !ReadFields(AStream, HH) ||
      !ReadFields(AStream, HW))
    return false;
  FClockwise = Cw != 0;
  FAngle = A;
  FCenterPt = C;
  FHalfHeight = HH;
  FHalfWidth = HW;
  return true;
}

void TKRNRectangle2d::SaveToStream(TKRNStream& AStream) const {
  AStream.WriteValue<unsigned char>(FClockwise);
  AStream.WriteValue(FAngle);
  AStream.WriteValue(FCenterPt);
  AStream.WriteValue(FHalfHeight);
  AStream.WriteValue(FHalfWidth);
}

std::string TKRNRectangle2d::AsString() const { return TKRNCustomPolygon2d::AsString(); }

std::unique_ptr<TKRNCustomPolygon2d> TKRNRectangle2d::BaseClone() const {
  return std::make_unique<TKRNRectangle2d>(FCenterPt, FHalfWidth, FHalfHeight, FAngle, FClockwise);
}

void TKRNRectangle2d::Scale(double AScaleFactor) {
  VectorScaleIn(FCenterPt, AScaleFactor);
  FHalfWidth *= std::fabs(AScaleFactor);
  FHalfHeight *= std::fabs(AScaleFactor);
}

// ---- circle -----------------------------------------------------------------

TKRNCircle2d::TKRNCircle2d(const TKRNVector2d& ACenterPt, double ARadius, bool AClockwise)
    : FCenterPt(ACenterPt), FRadius(ARadius) {
  FClockwise = AClockwise;
}

TKRNBox2d TKRNCircle2d::Box() const {
  return {{FCenterPt.X - FRadius, FCenterPt.Y - FRadius}, {FCenterPt.X + FRadius, FCenterPt.Y + FRadius}};
}

TKRNPtr<TKRNCustomLine2d> TKRNCircle2d::EdgeLine(int AIndex) const {
  if (AIndex < 0 || AIndex > 1) return nullptr;
  const TKRNVector2d Right{FCenterPt.X + FRadius, FCenterPt.Y}, Left{FCenterPt.X - FRadius, FCenterPt.Y};
  const TKRNArcType T = FClockwise ? atCS : atACS;
  return AIndex == 0 ? KRNMakeSegment(Right, Left, FRadius, T) : KRNMakeSegment(Left, Right, FRadius, T);
}

bool TKRNCircle2d::LoadFromStream(TKRNStream& AStream) {
  unsigned char Cw;
  TKRNVector2d C;
  double R;
  if (!ReadFields(AStream, Cw) || !ReadFields(AStream, C) || !ReadFields(AStream, R)) return false;
  FClockwise = Cw != 0;
  FCenterPt = C;
  FRadius = R;
  return true;
}

void TKRNCircle2d::SaveToStream(TKRNStream& AStream) const {
  AStream.WriteValue<unsigned char>(FClockwise);
  AStream.WriteValue(FCenterPt);
  AStream.WriteValue(FRadius);
}

double TKRNCircle2d::SignedArea() const {
  const double A = KRNPi * FRadius * FRadius;
  return FClockwise ? -A : A;
}

std::string TKRNCircle2d::AsString() const {
  return "(" + KRNFloatG(FCenterPt.X) + ", " + KRNFloatG(FCenterPt.Y) + ", " + KRNFloatG(FRadius) + ", " +
         ArcTypeToString(FClockwise ? atCS : atACS) + ")";
}

std::unique_ptr<TKRNCustomPolygon2d> TKRNCircle2d::BaseClone() const {
  return std::make_unique<TKRNCircle2d>(FCenterPt, FRadius, FClockwise);
}

void TKRNCircle2d::Scale(double AScaleFactor) {
  VectorScaleIn(FCenterPt, AScaleFactor);
  FRadius *= std::fabs(AScaleFactor);
}

// ---- ellipse ----------------------------------------------------------------

TKRNEllipse2d::TKRNEllipse2d(const TKRNVector2d& ACenterPt, double AXRadius, double AYRadius, double AAngle,
                             bool AClockwise)
    : FAngle(AAngle), FCenterPt(ACenterPt), FXRadius(AXRadius), FYRadius(AYRadius) {
  FClockwise = AClockwise;
}

TKRNVector2d TKRNEllipse2d::QuarterPoint(int AIndex) const {
  static const double K[4][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  int I = ((AIndex % 4) + 4) % 4;
  if (FClockwise) I = (4 - I) % 4;
  return VectorAdd(FCenterPt, VectorRotate({K[I][0] * FXRadius, K[I][1] * FYRadius}, FAngle));
}

TKRNPtr<TKRNCustomLine2d> TKRNEllipse2d::EdgeLine(int AIndex) const {
  if (AIndex < 0 || AIndex > 3) return nullptr;
  return KRNMakeSegment(QuarterPoint(AIndex), QuarterPoint(AIndex + 1), 0, atLine);
}

TKRNBox2d TKRNEllipse2d::Box() const {
  const double C = std::cos(FAngle), S = std::sin(FAngle);
  const double HX = std::sqrt(FXRadius * FXRadius * C * C + FYRadius * FYRadius * S * S);
  const double HY = std::sqrt(FXRadius * FXRadius * S * S + FYRadius * FYRadius * C * C);
  return {{FCenterPt.X - HX, FCenterPt.Y - HY}, {FCenterPt.X + HX, FCenterPt.Y + HY}};
}

bool TKRNEllipse2d::LoadFromStream(TKRNStream& AStream) {
  unsigned char Cw;
  double A, XR, YR;
  TKRNVector2d C;
  if (!ReadFields(AStream, Cw) || !ReadFields(AStream, A) || !ReadFields(AStream, C) || !ReadFields(AStream, XR) ||
      !ReadFields(AStream, YR))
    return false;
  FClockwise = Cw != 0;
  FAngle = A;
  FCenterPt = C;
  FXRadius = XR;
  FYRadius = YR;
  return true;
}

void TKRNEllipse2d::SaveToStream(TKRNStream& AStream) const {
  AStream.WriteValue<unsigned char>(FClockwise);
  AStream.WriteValue(FAngle);
  AStream.WriteValue(FCenterPt);
  AStream.WriteValue(FXRadius);
  AStream.WriteValue(FYRadius);
}

double TKRNEllipse2d::SignedArea() const {
  const double A = KRNPi * FXRadius * FYRadius;
  return FClockwise ? -A : A;
}

std::unique_ptr<TKRNCustomPolygon2d> TKRNEllipse2d::BaseClone() const {
  return std::make_unique<TKRNEllipse2d>(FCenterPt, FXRadius, FYRadius, FAngle, FClockwise);
}

double TKRNEllipse2d::Perimeter() const {
  // Ramanujan's second approximation: relative error below 1e-9 up to a 3:1 ratio.
  const double A = FXRadius, B = FYRadius;
  if (A + B <= 0) return 0;
  const double H = (A - B) * (A - B) / ((A + B) * (A + B));
  return KRNPi * (A + B) * (1 + 3 * H / (10 + std::sqrt(4 - 3 * H)));
}

void TKRNEllipse2d::Scale(double AScaleFactor) {
  VectorScaleIn(FCenterPt, AScaleFactor);
  FXRadius *= std::fabs(AScaleFactor);
  FYRadius *= std::fabs(AScaleFactor);
}

// ---- general polygon --------------------------------------------------------

TKRNPolygon2d::TKRNPolygon2d() : FList(true) {}

TKRNPolygon2d::TKRNPolygon2d(const TKRNBox2d& ABox) : FList(true) {
  FList.AddLinePoint(ABox.StartPt);
  FList.AddLinePoint({ABox.MaxX(), ABox.MinY()});
  FList.AddLinePoint(ABox.EndPt);
  FList.AddLinePoint({ABox.MinX(), ABox.MaxY()});
}

TKRNPolygon2d::TKRNPolygon2d(const TKRNCustomLine2d& ASeg, double ALineWidth, double ACenterLineOff,
                             bool AClockwise)
    : FList(true) {
  const TKRNVector2d S = ASeg.StartPt(), E = ASeg.EndPt();
  const bool Arc = ASeg.IsArcType() && TKRNArc2d::IsValidArc(S, E, ASeg.Radius(), ASeg.ArcType());
  if (ALineWidth < KRNEpsilon) {
    FList.AddArcPoint(S, Arc ? ASeg.ArcType() : atLine, ASeg.Radius());
    FList.AddArcPoint(E, Arc ? ArcTypeOpposite(ASeg.ArcType()) : atLine, ASeg.Radius());
  } else {
    const double O1 = ALineWidth / 2 - ACenterLineOff, O2 = ALineWidth / 2 + ACenterLineOff;
    const TKRNVector2d LS = VectorPerpendicular(ASeg.StartVector(), false);
    const TKRNVector2d LE = VectorPerpendicular(ASeg.EndVector(), false);
    if (Arc) {
      // The centre lies left of an anticlockwise arc's course.
      const bool Cw = ArcTypeIsClockwise(ASeg.ArcType());
      const double R = ASeg.Radius();
      const double RLeft = Cw ? R + O1 : R - O1, RRight = Cw ? R - O2 : R + O2;
      FList.AddArcPoint(VectorAdd(S, VectorScale(LS, O1)), ASeg.ArcType(), RLeft);
      FList.AddLinePoint(VectorAdd(E, VectorScale(LE, O1)));
      FList.AddArcPoint(VectorSub(E, VectorScale(LE, O2)), ArcTypeOpposite(ASeg.ArcType()), RRight);
      FList.AddLinePoint(VectorSub(S, VectorScale(LS, O2)));
    } else {
      FList.AddLinePoint(VectorAdd(S, VectorScale(LS, O1)));
      FList.AddLinePoint(VectorAdd(E, VectorScale(LE, O1)));
      FList.AddLinePoint(VectorSub(E, VectorScale(LE, O2)));
      FList.AddLinePoint(VectorSub(S, VectorScale(LS, O2)));
    }
  }
  if (!AClockwise) FList.Inverse();
}

TKRNPolygon2d::TKRNPolygon2d(const TKRNCustomPolygon2d& AFigure) : FList(true) { AddFigure(AFigure); }

TKRNPolygon2d::TKRNPolygon2d(const TKRNCustomLine2d& ALeftLine, const TKRNCustomLine2d& ARightLine) : FList(true) {
  FList.AddArcPoint(ALeftLine.StartPt(), ALeftLine.ArcType(), ALeftLine.Radius());
  FList.AddLinePoint(ALeftLine.EndPt());
  FList.AddArcPoint(ARightLine.EndPt(), ArcTypeOpposite(ARightLine.ArcType()), ARightLine.Radius());
  FList.AddLinePoint(ARightLine.StartPt());
}

TKRNPolygon2d::TKRNPolygon2d(const TKRNLines2d& ALines) : FList(true) {
  FList.Assign(ALines.List());
  if (FList.Count() > 1 && PointIsSame(FList.Points(0), FList.Points(FList.Count() - 1)))
    FList.Delete(FList.Count() - 1);
}

void TKRNPolygon2d::AddFigure(const TKRNCustomPolygon2d& AFigure) {
  if (const auto* P = dynamic_cast<const TKRNPolygon2d*>(&AFigure)) {
    FList.Assign(P->FList);
    return;
  }
  for (int I = 0; I < AFigure.GetCount(); ++I) {
    const TKRNPtr<TKRNCustomLine2d> E = AFigure.EdgeLine(I);
    FList.AddArcPoint(E->StartPt(), E->ArcType(), E->Radius());
  }
}

void TKRNPolygon2d::Assign(const TKRNCustomPolygon2d& ASource) {
  if (&ASource == this) return;
  FList.Clear();
  AddFigure(ASource);
}

std::unique_ptr<TKRNPolygon2d> TKRNPolygon2d::Clone() const {
  auto R = std::make_unique<TKRNPolygon2d>();
  R->FList.Assign(FList);
  return R;
}

void TKRNPolygon2d::LoadFromString(const std::string& AText) { KRNLoadVertexListFromString(FList, AText); }

std::string TKRNPolygon2d::AsString() const { return KRNVertexListAsString(FList); }

std::unique_ptr<TKRNPolygon2d> TKRNPolygon2d::GetSamplePoly(int ASampleRate) const {
  auto R = std::make_unique<TKRNPolygon2d>();
  const int N = FList.Count();
  for (int I = 0; I < N; ++I) {
    const TKRNVertex2d* V = FList[I];
    const TKRNVector2d& E = FList.Points((I + 1) % N);
    if (V->VertexType() == vtArc && N > 1 && TKRNArc2d::IsValidArc(V->Point(), E, V->Radius(), V->ArcType())) {
      const TKRNPoint2dDynArray Pts = TKRNArc2d::ArcSamplePoint(V->Point(), E, V->Radius(), V->ArcType(), ASampleRate);
      for (size_t K = 0; K + 1 < Pts.size(); ++K) R->FList.AddLinePoint(Pts[K]);
    } else {
      R->FList.AddLinePoint(V->Point());
    }
  }
  return R;
}

void TKRNPolygon2d::SetStartIndex(int AIndex) {
  if (AIndex > 0 && AIndex < FList.Count()) FList.Rotate(AIndex);
}

std::unique_ptr<TKRNPolygon2d> TKRNPolygon2d::ProjectivePoly(const TKRNBeeline2d& ARefBeeline,
                                                             double AScaleRate) const {
  std::unique_ptr<TKRNPolygon2d> R = GetSamplePoly(72);
  const TKRNVector2d V = VectorNormalized(ARefBeeline.Vector);
  for (int I = 0; I < R->FList.Count(); ++I) {
    const TKRNVector2d P = R->FList.Points(I);
    const TKRNVector2d Foot =
        VectorAdd(ARefBeeline.Point, VectorScale(V, VectorDot(VectorSub(P, ARefBeeline.Point), V)));
    R->FList[I]->SetPoint(VectorAdd(Foot, VectorScale(VectorSub(P, Foot), AScaleRate)));
  }
  return R;
}

bool TKRNPolygon2d::IsEqualTo(const TKRNPolygon2d& APolygon, double AEpsilon) const {
  const int N = FList.Count();
  if (N != APolygon.FList.Count()) return false;
  if (N == 0) return true;
  auto SameVertex = [&](const TKRNVertex2d* A, const TKRNVertex2d* B) {
    return PointIsSame(A->Point(), B->Point(), AEpsilon) && A->ArcType() == B->ArcType() &&
           (A->ArcType() == atLine || SameDouble(A->Radius(), B->Radius(), AEpsilon));
  };
  for (int K = 0; K < N; ++K) {
    bool All = true;
    for (int I = 0; I < N && All; ++I) All = SameVertex(FList[I], APolygon.FList[(I + K) % N]);
    if (All) return true;
  }
  return false;
}

void TKRNPolygon2d::Normalize(double AEpsilon) { NormalizeList(FList, AEpsilon, true, nullptr); }

bool TKRNPolygon2d::IsRectangle(double AEpsilon) const {
  const int N = FList.Count();
  if (N <= 3) return false;
  std::vector<TKRNVector2d> Dirs;
  for (int I = 0; I < N; ++I) {
    const TKRNVertex2d* V = FList[I];
    if (V->VertexType() != vtLine && V->IsArc()) return false;
    const TKRNVector2d& E = FList.Points((I + 1) % N);
    if (PointIsSame(V->Point(), E, KRNEpsilon)) continue;
    Dirs.push_back(VectorNormalized(VectorSub(E, V->Point())));
  }
  int RightAngles = 0;
  const size_t M = Dirs.size();
  for (size_t I = 0; I < M; ++I) {
    const TKRNVector2d& A = Dirs[I];
    const TKRNVector2d& B = Dirs[(I + 1) % M];
    if (SameDouble(VectorCross(A, B), 0, KRNEpsilon)) continue;
    if (!SameDouble(VectorDot(A, B), 0, AEpsilon)) return false;
    ++RightAngles;
  }
  return RightAngles == 4;
}

bool TKRNPolygon2d::IsOrthoRectangle(double AEpsilon) const {
  if (!IsRectangle(AEpsilon)) return false;
  return SameDouble(EdgeLine(0)->Length(), EdgeLine(1)->Length(), KRNEpsilon);
}

bool TKRNPolygon2d::IsCirCle() const {
  const int N = FList.Count();
  if (N < 2) return false;
  TKRNVector2d First{};
  for (int I = 0; I < N; ++I) {
    const TKRNVertex2d* V = FList[I];
    TKRNVector2d C;
    if (V->VertexType() != vtArc ||
        !TKRNArc2d::CalcCenterPt(V->Point(), FList.Points((I + 1) % N), V->Radius(), V->ArcType(), C))
      return false;
    if (I == 0) First = C;
    else if (!PointIsSame(C, First, KRNEpsilon)) return false;
  }
  return true;
}

// ---- open paths -------------------------------------------------------------

TKRNLines2d::TKRNLines2d(const TKRNCustomPolygon2d& APolygon) {
  const int N = APolygon.GetCount();
  for (int I = 0; I < N; ++I) {
    const TKRNPtr<TKRNCustomLine2d> E = APolygon.EdgeLine(I);
    FList.AddArcPoint(E->StartPt(), E->ArcType(), E->Radius());
    if (I == N - 1) FList.AddLinePoint(E->EndPt());
  }
}

std::unique_ptr<TKRNLines2d> TKRNLines2d::Clone() const {
  auto R = std::make_unique<TKRNLines2d>();
  R->Assign(*this);
  return R;
}

std::unique_ptr<TKRNLines2d> TKRNLines2d::Clone(int AFromIndex, int AEndIndex) const {
  auto R = std::make_unique<TKRNLines2d>();
  const int From = std::max(0, AFromIndex), To = std::min(FList.Count() - 1, AEndIndex);
  for (int I = From; I <= To; ++I) R->FList.Add(FList[I]->Clone().release());
  return R;
}

std::string TKRNLines2d::AsString() const { return KRNVertexListAsString(FList); }

double TKRNLines2d::LengthByIndex(int AIndex) const {
  double L = 0;
  for (int I = 0; I < std::min(AIndex, FList.Count() - 1); ++I) L += FList.EdgeLine(I, false)->Length();
  return L;
}

void TKRNLines2d::LoadFromString(const std::string& AText) { KRNLoadVertexListFromString(FList, AText); }

void TKRNLines2d::Normalize(double AEpsilon) { NormalizeList(FList, AEpsilon, false, nullptr); }

void TKRNLines2d::Normalize(double AEpsilon, std::vector<int>& AIndexes) {
  NormalizeList(FList, AEpsilon, false, &AIndexes);
}

// ---- lists of figures -------------------------------------------------------

TKRNMultiPolygon2d::TKRNMultiPolygon2d(const TKRNMultiLines2d& ALines) : FOwnsObjects(true) {
  for (int I = 0; I < ALines.Count(); ++I) FItems.push_back(new TKRNPolygon2d(*ALines.GetItem(I)));
}

void TKRNMultiPolygon2d::SetItems(int AIndex, TKRNCustomPolygon2d* APolygon) {
  if (FOwnsObjects && FItems[size_t(AIndex)] != APolygon) delete FItems[size_t(AIndex)];
  FItems[size_t(AIndex)] = APolygon;
}

void TKRNMultiPolygon2d::Insert(int AIndex, TKRNCustomPolygon2d* APolygon) {
  FItems.insert(FItems.begin() + std::clamp(AIndex, 0, Count()), APolygon);
}

void TKRNMultiPolygon2d::Delete(int AIndex) {
  if (FOwnsObjects) delete FItems[size_t(AIndex)];
  FItems.erase(FItems.begin() + AIndex);
}

void TKRNMultiPolygon2d::Clear() {
  if (FOwnsObjects)
    for (TKRNCustomPolygon2d* P : FItems) delete P;
  FItems.clear();
}

TKRNBox2d TKRNMultiPolygon2d::Box() const {
  TKRNBox2d B{};
  for (size_t I = 0; I < FItems.size(); ++I) B = I == 0 ? FItems[I]->Box() : BoxUnion(B, FItems[I]->Box());
  return B;
}

double TKRNMultiPolygon2d::SignArea() const {
  double A = 0;
  for (const TKRNCustomPolygon2d* P : FItems) A += P->SignedArea();
  return A;
}

std::unique_ptr<TKRNMultiPolygon2d> TKRNMultiPolygon2d::Clone() const {
  auto R = std::make_unique<TKRNMultiPolygon2d>(true);
  for (const TKRNCustomPolygon2d* P : FItems) R->Add(P->BaseClone().release());
  return R;
}

double TKRNMultiPolygon2d::LengthBetweenY(double AY1, double AY2, bool ANeedUpBorderLine,
                                          bool ANeedBottomBorderLine) const {
  double L = 0;
  for (const TKRNCustomPolygon2d* P : FItems) L += P->LengthBetweenY(AY1, AY2, ANeedUpBorderLine, ANeedBottomBorderLine);
  return L;
}

bool TKRNMultiPolygon2d::IsOnVertexPoint(const TKRNVector2d& APoint, double AEpsilon) const {
  return std::any_of(FItems.begin(), FItems.end(),
                     [&](const TKRNCustomPolygon2d* P) { return P->IsOnVertexPoint(APoint, AEpsilon); });
}

void TKRNMultiPolygon2d::Inverse() {
  for (TKRNCustomPolygon2d* P : FItems) P->Inverse();
}

void TKRNMultiPolygon2d::Scale(double AScaleFactor) {
  for (TKRNCustomPolygon2d* P : FItems) P->Scale(AScaleFactor);
}

bool TKRNMultiPolygon2d::LoadFromStream(TKRNStream& AStream) {
  Clear();
  std::int32_t N;
  if (AStream.Read(&N, sizeof N) != sizeof N || N < 0 || std::size_t(N) > AStream.Remaining()) return false;
  for (std::int32_t I = 0; I < N; ++I) {
    unsigned char T;
    if (AStream.Read(&T, 1) != 1) return false;
    TKRNCustomPolygon2d* P;
    switch (T) {
      case ptCircle: P = new TKRNCircle2d(); break;
      case ptEllipse: P = new TKRNEllipse2d(); break;
      case ptOrthoRectangle: P = new TKRNOrthoRectangle2d(); break;
      case ptRectangle: P = new TKRNRectangle2d(); break;
      case ptPolygon: P = new TKRNPolygon2d(); break;
      default: return false;
    }
    FItems.push_back(P);
    if (!P->LoadFromStream(AStream)) return false;
  }
  return true;
}

void TKRNMultiPolygon2d::SaveToStream(TKRNStream& AStream) const {
  AStream.WriteValue<std::int32_t>(Count());
  for (const TKRNCustomPolygon2d* P : FItems) {
    AStream.WriteValue<unsigned char>(P->PolyType());
    P->SaveToStream(AStream);
  }
}

bool TKRNMultiPolygon2d::IsRectangle(double AEpsilon) const {
  return Count() == 1 && FItems[0]->IsRectangle(AEpsilon);
}

bool TKRNMultiPolygon2d::HasCirCle() const {
  return std::any_of(FItems.begin(), FItems.end(), [](const TKRNCustomPolygon2d* P) { return P->IsCirCle(); });
}

void TKRNMultiPolygon2d::Normalize(double AEpsilon) {
  for (TKRNCustomPolygon2d* P : FItems) P->Normalize(AEpsilon);
}

double TKRNMultiPolygon2d::Perimeter() const {
  double L = 0;
  for (const TKRNCustomPolygon2d* P : FItems) L += P->Perimeter();
  return L;
}

TKRNEdge2dRef TKRNMultiPolygon2d::GetEdge(int AIndex) const {
  for (const TKRNCustomPolygon2d* P : FItems) {
    if (AIndex < P->GetCount()) return AIndex < 0 ? nullptr : P->Edge(AIndex);
    AIndex -= P->GetCount();
  }
  return nullptr;
}

TKRNMultiLines2d::TKRNMultiLines2d(const TKRNSeg2dList& ASegs) {
  for (int I = 0; I < ASegs.Count(); ++I) {
    auto L = std::make_unique<TKRNLines2d>();
    const TKRNCustomLine2d* S = ASegs[I];
    L->List().AddArcPoint(S->StartPt(), S->ArcType(), S->Radius());
    L->List().AddLinePoint(S->EndPt());
    FItems.push_back(std::move(L));
  }
  Merge();
}

TKRNMultiLines2d::TKRNMultiLines2d(const TKRNMultiPolygon2d& APolygons) {
  for (int I = 0; I < APolygons.Count(); ++I) FItems.push_back(std::make_unique<TKRNLines2d>(*APolygons.GetItems(I)));
}

std::unique_ptr<TKRNMultiLines2d> TKRNMultiLines2d::Clone() const {
  auto R = std::make_unique<TKRNMultiLines2d>();
  for (const auto& L : FItems) R->Add(L->Clone());
  return R;
}

// Appends B's vertices to A; B's first point replaces A's last.
static void AppendPath(TKRNLines2d& A, const TKRNLines2d& B) {
  A.List().Delete(A.Count() - 1);
  for (int I = 0; I < B.Count(); ++I) A.List().Add(B.List()[I]->Clone().release());
}

void TKRNMultiLines2d::Merge(double AEpsilon) {
  auto Closed = [&](const TKRNLines2d& L) {
    return L.Count() > 2 && PointIsSame(L.List().Points(0), L.List().Points(L.Count() - 1), AEpsilon);
  };
  bool Changed = true;
  while (Changed) {
    Changed = false;
    for (size_t I = 0; I < FItems.size() && !Changed; ++I) {
      TKRNLines2d& A = *FItems[I];
      if (A.Count() < 2 || Closed(A)) continue;
      for (size_t J = I + 1; J < FItems.size() && !Changed; ++J) {
        TKRNLines2d& B = *FItems[J];
        if (B.Count() < 2 || Closed(B)) continue;
        const TKRNVector2d AS = A.List().Points(0), AE = A.List().Points(A.Count() - 1);
        const TKRNVector2d BS = B.List().Points(0), BE = B.List().Points(B.Count() - 1);
        if (PointIsSame(AE, BS, AEpsilon)) {
        } else if (PointIsSame(AE, BE, AEpsilon)) {
          B.Inverse();
        } else if (PointIsSame(AS, BE, AEpsilon)) {
          A.Inverse();
          B.Inverse();
        } else if (PointIsSame(AS, BS, AEpsilon)) {
          A.Inverse();
        } else {
          continue;
        }
        AppendPath(A, B);
        FItems.erase(FItems.begin() + std::ptrdiff_t(J));
        Changed = true;
      }
    }
  }
}

TKRNBox2d TKRNMultiLines2d::Box() const {
  TKRNBox2d B{};
  for (size_t I = 0; I < FItems.size(); ++I) B = I == 0 ? FItems[I]->Box() : BoxUnion(B, FItems[I]->Box());
  return B;
}

double TKRNMultiLines2d::Length() const {
  double L = 0;
  for (const auto& P : FItems) L += P->Length();
  return L;
}

std::string TKRNMultiLines2d::AsString() const {
  std::string S;
  for (size_t I = 0; I < FItems.size(); ++I) S += (I ? ";" : "") + FItems[I]->AsString();
  return S;
}

void TKRNMultiLines2d::LoadFromString(const std::string& AText) {
  FItems.clear();
  size_t From = 0;
  while (From <= AText.size()) {
    size_t To = AText.find(';', From);
    if (To == std::string::npos) To = AText.size();
    auto L = std::make_unique<TKRNLines2d>();
    L->LoadFromString(AText.substr(From, To - From));
    if (L->Count() > 0) FItems.push_back(std::move(L));
    From = To + 1;
  }
}

void TKRNMultiLines2d::Inverse() {
  std::reverse(FItems.begin(), FItems.end());
  for (auto& L : FItems) L->Inverse();
}
