#include "KRNVertex2d.h"

#include "KRN2dObjectPool.h"

#include <algorithm>
#include <cstdint>

std::string TKRNVertex2d::AsXPoint() const {
  return KRNFloatG(FPoint.X) + ", " + KRNFloatG(FPoint.Y) + ", " + KRNFloatG(Radius()) + ", " +
         ArcTypeToString(ArcType());
}

TKRNBox2d TKRNVertex2d::BoxWith(const TKRNVector2d& AEndPoint) const { return BoxOfPoints(FPoint, AEndPoint); }

TKRNPtr<TKRNVertex2d> TKRNVertex2d::Clone() const { return TKRNPtr<TKRNVertex2d>(new TKRNVertex2d(FPoint)); }

bool TKRNVertex2d::LoadFromStream(TKRNStream& AStream) {
  return AStream.Read(&FPoint, sizeof FPoint) == sizeof FPoint;
}

void TKRNVertex2d::SaveToStream(TKRNStream& AStream) const { AStream.WriteValue(FPoint); }

void TKRNVertex2d::Scale(double AScaleFactor) { VectorScaleIn(FPoint, AScaleFactor); }

TKRNPtr<TKRNVertex2d> TKRNLineVertex2d::Clone() const {
  return TKRNPtr<TKRNVertex2d>(KRN2dObjectPool().GetLineVertex(FPoint));
}

TKRNBox2d TKRNArcVertex2d::BoxWith(const TKRNVector2d& AEndPoint) const {
  if (!TKRNArc2d::IsValidArc(FPoint, AEndPoint, FRadius, FArcType)) return BoxOfPoints(FPoint, AEndPoint);
  return TKRNArc2d::ArcBox(FPoint, AEndPoint, FRadius, FArcType);
}

TKRNPtr<TKRNVertex2d> TKRNArcVertex2d::Clone() const {
  return TKRNPtr<TKRNVertex2d>(new TKRNArcVertex2d(FPoint, FArcType, FRadius));
}

bool TKRNArcVertex2d::LoadFromStream(TKRNStream& AStream) {
  unsigned char T;
  double R;
  if (!TKRNVertex2d::LoadFromStream(AStream) || AStream.Read(&T, 1) != 1 || T > atCL ||
      AStream.Read(&R, sizeof R) != sizeof R)
    return false;
  FArcType = TKRNArcType(T);
  FRadius = R;
  return true;
}

void TKRNArcVertex2d::SaveToStream(TKRNStream& AStream) const {
  TKRNVertex2d::SaveToStream(AStream);
  AStream.WriteValue<unsigned char>(FArcType);
  AStream.WriteValue(FRadius);
}

void TKRNArcVertex2d::Validate(const TKRNVector2d& AEndPoint) {
  if (!TKRNArc2d::IsValidArc(FPoint, AEndPoint, FRadius, FArcType)) FArcType = atLine;
}

void TKRNArcVertex2d::Scale(double AScaleFactor) {
  TKRNVertex2d::Scale(AScaleFactor);
  FRadius *= std::fabs(AScaleFactor);
}

TKRNPtr<TKRNVertex2d> TKRNEllipseArcVertex2d::Clone() const {
  return TKRNPtr<TKRNVertex2d>(new TKRNEllipseArcVertex2d(FPoint, FArcType, FXRadius, FYRadius));
}

bool TKRNEllipseArcVertex2d::LoadFromStream(TKRNStream& AStream) {
  unsigned char T;
  double R[2];
  if (!TKRNVertex2d::LoadFromStream(AStream) || AStream.Read(&T, 1) != 1 || T > atCL ||
      AStream.Read(R, sizeof R) != sizeof R)
    return false;
  FArcType = TKRNArcType(T);
  FXRadius = R[0];
  FYRadius = R[1];
  return true;
}

void TKRNEllipseArcVertex2d::SaveToStream(TKRNStream& AStream) const {
  TKRNVertex2d::SaveToStream(AStream);
  AStream.WriteValue<unsigned char>(FArcType);
  AStream.WriteValue(FXRadius);
  AStream.WriteValue(FYRadius);
}

void TKRNEllipseArcVertex2d::Scale(double AScaleFactor) {
  TKRNVertex2d::Scale(AScaleFactor);
  FXRadius *= std::fabs(AScaleFactor);
  FYRadius *= std::fabs(AScaleFactor);
}

TKRNVertex2d* KRNMakeVertex(const TKRNVector2d& APoint, TKRNArcType AArcType, double ARadius) {
  if (AArcType == atLine) return KRN2dObjectPool().GetLineVertex(APoint);
  return new TKRNArcVertex2d(APoint, AArcType, ARadius);
}

TKRNPtr<TKRNCustomLine2d> KRNVertexEdge(const TKRNVertex2d& AVertex, const TKRNVector2d& AEndPoint) {
  if (AVertex.VertexType() == vtArc)
    return KRNMakeSegment(AVertex.Point(), AEndPoint, AVertex.Radius(), AVertex.ArcType());
  return KRNMakeSegment(AVertex.Point(), AEndPoint, 0, atLine);
}

// ---- the list ---------------------------------------------------------------

void TKRNVertex2dList::FreeVertex(TKRNVertex2d* AVertex) const {
  if (FOwnsObjects) KRN2dObjectPool().DelObject(AVertex);
}

int TKRNVertex2dList::Add(TKRNVertex2d* AVertex) {
  FList.push_back(AVertex);
  return Count() - 1;
}

TKRNVertex2d* TKRNVertex2dList::AddLinePoint(const TKRNVector2d& APoint) {
  TKRNVertex2d* V = KRN2dObjectPool().GetLineVertex(APoint);
  Add(V);
  return V;
}

TKRNVertex2d* TKRNVertex2dList::InsertLinePoint(int AIndex, const TKRNVector2d& APoint) {
  TKRNVertex2d* V = KRN2dObjectPool().GetLineVertex(APoint);
  Insert(AIndex, V);
  return V;
}

TKRNVertex2d* TKRNVertex2dList::AddArcPoint(const TKRNVector2d& APoint, TKRNArcType AArcType, double ARadius) {
  TKRNVertex2d* V = KRNMakeVertex(APoint, AArcType, ARadius);
  Add(V);
  return V;
}

void TKRNVertex2dList::Insert(int AIndex, TKRNVertex2d* AVertex) {
  FList.insert(FList.begin() + std::clamp(AIndex, 0, Count()), AVertex);
}

void TKRNVertex2dList::Replace(int AIndex, TKRNVertex2d* AVertex) {
  FreeVertex(FList[size_t(AIndex)]);
  FList[size_t(AIndex)] = AVertex;
}

int TKRNVertex2dList::IndexOf(const TKRNVertex2d* AVertex) const {
  const auto It = std::find(FList.begin(), FList.end(), AVertex);
  return It == FList.end() ? -1 : int(It - FList.begin());
}

int TKRNVertex2dList::IndexOf(const TKRNVector2d& APoint, double AEpsilon) const {
  for (int I = 0; I < Count(); ++I)
    if (PointIsSame(FList[size_t(I)]->Point(), APoint, AEpsilon)) return I;
  return -1;
}

void TKRNVertex2dList::Assign(const TKRNVertex2dList& ASource) {
  if (&ASource == this) return;
  Clear();
  FList.reserve(ASource.FList.size());
  for (TKRNVertex2d* V : ASource.FList) FList.push_back(FOwnsObjects ? V->Clone().release() : V);
}

TKRNBox2d TKRNVertex2dList::Box(bool AClosePath) const {
  if (FList.empty()) return {};
  // Every vertex is in the box; an arc edge may reach beyond its two ends.
  TKRNBox2d B = BoxOfPoints(FList[0]->Point(), FList[0]->Point());
  const int N = Count();
  for (int I = 0; I < N; ++I) {
    const TKRNVertex2d* V = FList[size_t(I)];
    BoxAddPoint(B, V->Point());
    if (V->Kind() != vtArc) continue;
    if (I + 1 < N) B = BoxUnion(B, V->BoxWith(FList[size_t(I) + 1]->Point()));
    else if (AClosePath && N > 1) B = BoxUnion(B, V->BoxWith(FList[0]->Point()));
  }
  return B;
}

void TKRNVertex2dList::Clear() {
  for (TKRNVertex2d* V : FList) FreeVertex(V);
  FList.clear();
}

std::unique_ptr<TKRNVertex2dList> TKRNVertex2dList::Clone() const {
  auto R = std::make_unique<TKRNVertex2dList>(true);
  R->Assign(*this);
  return R;
}

void TKRNVertex2dList::Delete(int AIndex) {
  FreeVertex(FList[size_t(AIndex)]);
  FList.erase(FList.begin() + AIndex);
}

std::vector<std::vector<int>> TKRNVertex2dList::GroupEdges(bool AClosePath) const {
  std::vector<std::vector<int>> Groups;
  const int N = Count();
  const int EdgeCount = AClosePath ? N : N - 1;
  TKRNVector2d LastDir{};
  for (int I = 0; I < EdgeCount; ++I) {
    const TKRNVertex2d* V = FList[size_t(I)];
    const TKRNVector2d& P2 = FList[size_t((I + 1) % N)]->Point();
    const bool Straight = !(V->VertexType() == vtArc && V->IsArc());
    const TKRNVector2d Dir = VectorNormalized(VectorSub(P2, V->Point()));
    const bool Continues = Straight && !Groups.empty() && !VectorIsZero(Dir) && VectorDot(Dir, LastDir) > 0 &&
                           SameDouble(VectorCross(Dir, LastDir), 0, KRNAngleEpsilon) &&
                           FList[size_t(Groups.back().back())]->VertexType() != vtArc;
    if (Continues) Groups.back().push_back(I);
    else Groups.push_back({I});
    if (!VectorIsZero(Dir)) LastDir = Straight ? Dir : TKRNVector2d{};
  }
  return Groups;
}

TKRNPtr<TKRNCustomLine2d> TKRNVertex2dList::EdgeLine(int AIndex, bool AClosePath) const {
  const int N = Count();
  if (AIndex < 0 || AIndex >= N || N < 2) return nullptr;
  if (AIndex == N - 1 && !AClosePath) return nullptr;
  return KRNVertexEdge(*FList[size_t(AIndex)], FList[size_t((AIndex + 1) % N)]->Point());
}

TKRNEdge2dRef TKRNVertex2dList::Edge(int AIndex, bool AClosePath) const {
  TKRNPtr<TKRNCustomLine2d> L = EdgeLine(AIndex, AClosePath);
  if (!L) return nullptr;
  return KRN2dObjectPool().GetEdge(L.release());
}

double TKRNVertex2dList::Length(bool AClosePath) const {
  double Sum = 0;
  const int N = Count();
  for (int I = 0; I < N; ++I) {
    if (I == N - 1 && !AClosePath) break;
    if (N < 2) break;
    const TKRNVertex2d* V = FList[size_t(I)];
    const TKRNVector2d& E = FList[size_t((I + 1) % N)]->Point();
    if (V->VertexType() == vtArc && TKRNArc2d::IsValidArc(V->Point(), E, V->Radius(), V->ArcType()))
      Sum += TKRNArc2d::ArcLength(V->Point(), E, V->Radius(), V->ArcType());
    else
      Sum += VectorDistance(V->Point(), E);
  }
  return Sum;
}

bool TKRNVertex2dList::IsOnVertexPoint(const TKRNVector2d& APoint, double AEpsilon) const {
  return IndexOf(APoint, AEpsilon) >= 0;
}

void TKRNVertex2dList::Inverse() {
  const int N = Count();
  if (N < 2) return;
  // New vertex j takes old point n-1-j and the arc of old vertex n-2-j (mod n),
  // which is the edge it now starts, walked backwards.
  std::vector<TKRNVector2d> Pts(static_cast<size_t>(N));
  for (int I = 0; I < N; ++I) Pts[size_t(I)] = FList[size_t(I)]->Point();
  std::vector<TKRNVertex2d*> Old = FList;
  for (int J = 0; J < N; ++J) {
    TKRNVertex2d* V = Old[size_t(((N - 2 - J) % N + N) % N)];
    V->SetPoint(Pts[size_t(N - 1 - J)]);
    V->InverseArc();
    FList[size_t(J)] = V;
  }
}

void TKRNVertex2dList::Scale(double AScaleFactor) {
  for (TKRNVertex2d* V : FList) V->Scale(AScaleFactor);
}

bool TKRNVertex2dList::LoadFromStream(TKRNStream& AStream) {
  if (!FOwnsObjects) return true;
  Clear();
  std::int32_t N;
  if (AStream.Read(&N, sizeof N) != sizeof N || N < 0) return false;
  // Each vertex takes at least 17 bytes: refuse counts the stream cannot hold.
  if (std::size_t(N) > AStream.Remaining() / 17) return false;
  FList.reserve(size_t(N));
  for (std::int32_t I = 0; I < N; ++I) {
    unsigned char T;
    if (AStream.Read(&T, 1) != 1) return false;
    TKRNVertex2d* V;
    switch (T) {
      case vtLine: V = KRN2dObjectPool().GetLineVertex({}); break;
      case vtArc: V = new TKRNArcVertex2d(); break;
      case vtEllipseArc: V = new TKRNEllipseArcVertex2d(); break;
      default: return false;
    }
    FList.push_back(V);
    if (!V->LoadFromStream(AStream)) return false;
  }
  return true;
}

void TKRNVertex2dList::SaveToStream(TKRNStream& AStream) const {
  if (!FOwnsObjects) return;
  AStream.WriteValue<std::int32_t>(Count());
  for (const TKRNVertex2d* V : FList) {
    AStream.WriteValue<unsigned char>(V->VertexType());
    V->SaveToStream(AStream);
  }
}
