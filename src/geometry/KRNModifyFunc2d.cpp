#include "KRNModifyFunc2d.h"

#include "KRNPositionFunc2d.h"

#include <cmath>

// ---------------------------------------------------------------------------
// Move

void TKRNMoveFunc2d::Move(const TKRNVector2d& APt, const TKRNVector2d& AVt, TKRNVector2d& AResult) {
  AResult = VectorAdd(APt, AVt);
}

void TKRNMoveFunc2d::Move(TKRNVertex2d& AVertex, const TKRNVector2d& AVt) {
  AVertex.SetPoint(VectorAdd(AVertex.Point(), AVt));
}

void TKRNMoveFunc2d::Move(TKRNVertex2dList& AList, const TKRNVector2d& AVt) {
  for (int I = 0; I < AList.Count(); ++I)
    Move(*AList[I], AVt);
}

void TKRNMoveFunc2d::Move(TKRNCustomPolygon2d& APolygon, const TKRNVector2d& AVt) {
  if (auto* O = dynamic_cast<TKRNOrthoRectangle2d*>(&APolygon)) {
    VectorAddIn(O->FStartPt, AVt);
    VectorAddIn(O->FEndPt, AVt);
  } else if (auto* R = dynamic_cast<TKRNRectangle2d*>(&APolygon)) {
    VectorAddIn(R->FCenterPt, AVt);
  } else if (auto* C = dynamic_cast<TKRNCircle2d*>(&APolygon)) {
    VectorAddIn(C->FCenterPt, AVt);
  } else if (auto* E = dynamic_cast<TKRNEllipse2d*>(&APolygon)) {
    VectorAddIn(E->FCenterPt, AVt);
  } else if (auto* P = dynamic_cast<TKRNPolygon2d*>(&APolygon)) {
    Move(P->List(), AVt);
  }
}

void TKRNMoveFunc2d::Move(TKRNMultiPolygon2d& APolygon, const TKRNVector2d& AVt) {
  for (int I = 0; I < APolygon.Count(); ++I)
    Move(*APolygon.GetItems(I), AVt);
}

void TKRNMoveFunc2d::Move(TKRNLines2d& ALines, const TKRNVector2d& AVt) { Move(ALines.List(), AVt); }

void TKRNMoveFunc2d::Move(TKRNMultiLines2d& ALines, const TKRNVector2d& AVt) {
  for (int I = 0; I < ALines.Count(); ++I)
    Move(*ALines.GetItem(I), AVt);
}

void TKRNMoveFunc2d::Move(TKRNCustomLine2d& ASeg, const TKRNVector2d& AVt) {
  ASeg.SetStartPt(VectorAdd(ASeg.StartPt(), AVt));
  ASeg.SetEndPt(VectorAdd(ASeg.EndPt(), AVt));
}

void TKRNMoveFunc2d::Move(TKRNBox2d& ABox, const TKRNVector2d& AVt) {
  ABox = TKRNBox2d{VectorAdd(ABox.StartPt, AVt), VectorAdd(ABox.EndPt, AVt)};
}

// ---------------------------------------------------------------------------
// Rotate

TKRNVector2d TKRNRotateFunc2d::Rotate(const TKRNVector2d& APoint2d, const TKRNVector2d& ARefPt2d, double AAngle) {
  return VectorAdd(VectorRotate(VectorSub(APoint2d, ARefPt2d), AAngle), ARefPt2d);
}

TKRNBeeline2d TKRNRotateFunc2d::Rotate(const TKRNBeeline2d& ABeeline, const TKRNVector2d& ARefPt2d, double AAngle) {
  return TKRNBeeline2d(Rotate(ABeeline.Point, ARefPt2d, AAngle), VectorRotate(ABeeline.Vector, AAngle));
}

void TKRNRotateFunc2d::Rotate(TKRNVertex2d& AVertex, const TKRNVector2d& ARefPt2d, double AAngle) {
  AVertex.SetPoint(Rotate(AVertex.Point(), ARefPt2d, AAngle));
}

void TKRNRotateFunc2d::Rotate(TKRNVertex2dList& AList, const TKRNVector2d& ARefPt2d, double AAngle) {
  for (int I = 0; I < AList.Count(); ++I)
    Rotate(*AList[I], ARefPt2d, AAngle);
}

void TKRNRotateFunc2d::Rotate(TKRNCustomPolygon2d& APolygon, const TKRNVector2d& ARefPt2d, double AAngle) {
  if (auto* O = dynamic_cast<TKRNOrthoRectangle2d*>(&APolygon)) {
    O->FStartPt = Rotate(O->FStartPt, ARefPt2d, AAngle);
    O->FEndPt = Rotate(O->FEndPt, ARefPt2d, AAngle);
  } else if (auto* R = dynamic_cast<TKRNRectangle2d*>(&APolygon)) {
    R->FCenterPt = Rotate(R->FCenterPt, ARefPt2d, AAngle);
    R->FAngle += AAngle;
  } else if (auto* C = dynamic_cast<TKRNCircle2d*>(&APolygon)) {
    C->FCenterPt = Rotate(C->FCenterPt, ARefPt2d, AAngle);
  } else if (auto* E = dynamic_cast<TKRNEllipse2d*>(&APolygon)) {
    E->FCenterPt = Rotate(E->FCenterPt, ARefPt2d, AAngle);
    E->FAngle += AAngle;
  } else if (auto* P = dynamic_cast<TKRNPolygon2d*>(&APolygon)) {
    Rotate(P->List(), ARefPt2d, AAngle);
  }
}

void TKRNRotateFunc2d::Rotate(TKRNMultiPolygon2d& APolygon, const TKRNVector2d& ARefPt2d, double AAngle) {
  for (int I = 0; I < APolygon.Count(); ++I)
    Rotate(*APolygon.GetItems(I), ARefPt2d, AAngle);
}

void TKRNRotateFunc2d::Rotate(TKRNLines2d& ALines, const TKRNVector2d& ARefPt2d, double AAngle) {
  Rotate(ALines.List(), ARefPt2d, AAngle);
}

void TKRNRotateFunc2d::Rotate(TKRNMultiLines2d& ALines, const TKRNVector2d& ARefPt2d, double AAngle) {
  for (int I = 0; I < ALines.Count(); ++I)
    Rotate(*ALines.GetItem(I), ARefPt2d, AAngle);
}

void TKRNRotateFunc2d::Rotate(TKRNCustomLine2d& ASeg, const TKRNVector2d& ARefPt2d, double AAngle) {
  ASeg.SetStartPt(Rotate(ASeg.StartPt(), ARefPt2d, AAngle));
  ASeg.SetEndPt(Rotate(ASeg.EndPt(), ARefPt2d, AAngle));
}

// ---------------------------------------------------------------------------
// Mirror

TKRNVector2d TKRNMirrorFunc2d::Mirror(const TKRNVector2d& APt, const TKRNBeeline2d& ABl) {
  return VectorAdd(VectorReflect(VectorSub(APt, ABl.Point), ABl.Vector), ABl.Point);
}

void TKRNMirrorFunc2d::Mirror(TKRNVertex2d& AVertex, const TKRNBeeline2d& ABl) {
  AVertex.SetPoint(Mirror(AVertex.Point(), ABl));
}

void TKRNMirrorFunc2d::Mirror(TKRNVertex2dList& AList, const TKRNBeeline2d& ABl) {
  for (int I = 0; I < AList.Count(); ++I)
    Mirror(*AList[I], ABl);
  for (int I = 0; I < AList.Count(); ++I)
    AList[I]->InverseArc();
}

void TKRNMirrorFunc2d::Mirror(TKRNLines2d& ALines, const TKRNBeeline2d& ABl) { Mirror(ALines.List(), ABl); }

void TKRNMirrorFunc2d::Mirror(TKRNCustomLine2d& ASeg, const TKRNBeeline2d& ABl) {
  ASeg.SetStartPt(Mirror(ASeg.StartPt(), ABl));
  ASeg.SetEndPt(Mirror(ASeg.EndPt(), ABl));
  if (auto* A = dynamic_cast<TKRNArc2d*>(&ASeg))
    A->SetArcType(ArcTypeOpposite(A->ArcType()));
}

void TKRNMirrorFunc2d::Mirror(TKRNCustomPolygon2d& APolygon, const TKRNBeeline2d& ABl) {
  const double LineAngle = std::atan2(ABl.Vector.Y, ABl.Vector.X);
  if (auto* O = dynamic_cast<TKRNOrthoRectangle2d*>(&APolygon)) {
    O->FStartPt = Mirror(O->FStartPt, ABl);
    O->FEndPt = Mirror(O->FEndPt, ABl);
  } else if (auto* R = dynamic_cast<TKRNRectangle2d*>(&APolygon)) {
    R->FCenterPt = Mirror(R->FCenterPt, ABl);
    R->FAngle = 2 * LineAngle - R->FAngle;
  } else if (auto* C = dynamic_cast<TKRNCircle2d*>(&APolygon)) {
    C->FCenterPt = Mirror(C->FCenterPt, ABl);
  } else if (auto* E = dynamic_cast<TKRNEllipse2d*>(&APolygon)) {
    E->FCenterPt = Mirror(E->FCenterPt, ABl);
    E->FAngle = 2 * LineAngle - E->FAngle;
  } else if (auto* P = dynamic_cast<TKRNPolygon2d*>(&APolygon)) {
    Mirror(P->List(), ABl);
  }
}

// ---------------------------------------------------------------------------
// Stretch

TKRNVector2d TKRNStretchFunc2d::Stretch(const TKRNVector2d& APt, const TKRNBox2d& ABox2d,
                                        const TKRNVector2d& AVector2d) {
  return TKRNPositionFunc2d::IsPointInBox(APt, ABox2d, KRNEpsilon) ? VectorAdd(APt, AVector2d) : APt;
}

void TKRNStretchFunc2d::Stretch(TKRNCustomLine2d& ASeg, const TKRNBox2d& ABox2d, const TKRNVector2d& AVector2d) {
  ASeg.SetStartPt(Stretch(ASeg.StartPt(), ABox2d, AVector2d));
  ASeg.SetEndPt(Stretch(ASeg.EndPt(), ABox2d, AVector2d));
  if (auto* A = dynamic_cast<TKRNArc2d*>(&ASeg))
    if (A->IsArcType() && !TKRNArc2d::IsValidArc(A->StartPt(), A->EndPt(), A->Radius(), A->ArcType()))
      A->SetArcType(atLine);
}

void TKRNStretchFunc2d::Stretch(TKRNVertex2dList& AList, const TKRNBox2d& ABox2d, const TKRNVector2d& AVector2d,
                                bool AClosedPath) {
  const int N = AList.Count();
  for (int I = 0; I < N; ++I)
    AList[I]->SetPoint(Stretch(AList[I]->Point(), ABox2d, AVector2d));
  for (int I = 0; I + 1 < N; ++I)
    AList[I]->Validate(AList[I + 1]->Point());
  if (AClosedPath && N > 0)
    AList[N - 1]->Validate(AList[0]->Point());
}

void TKRNStretchFunc2d::Stretch(TKRNLines2d& ALines, const TKRNBox2d& ABox2d, const TKRNVector2d& AVector2d) {
  Stretch(ALines.List(), ABox2d, AVector2d, false);
}

void TKRNStretchFunc2d::Stretch(TKRNCustomPolygon2d& APolygon, const TKRNBox2d& ABox2d,
                                const TKRNVector2d& AVector2d) {
  if (auto* O = dynamic_cast<TKRNOrthoRectangle2d*>(&APolygon)) {
    O->FStartPt = Stretch(O->FStartPt, ABox2d, AVector2d);
    O->FEndPt = Stretch(O->FEndPt, ABox2d, AVector2d);
  } else if (auto* R = dynamic_cast<TKRNRectangle2d*>(&APolygon)) {
    R->FCenterPt = Stretch(R->FCenterPt, ABox2d, AVector2d);
  } else if (auto* C = dynamic_cast<TKRNCircle2d*>(&APolygon)) {
    C->FCenterPt = Stretch(C->FCenterPt, ABox2d, AVector2d);
  } else if (auto* E = dynamic_cast<TKRNEllipse2d*>(&APolygon)) {
    E->FCenterPt = Stretch(E->FCenterPt, ABox2d, AVector2d);
  } else if (auto* P = dynamic_cast<TKRNPolygon2d*>(&APolygon)) {
    Stretch(P->List(), ABox2d, AVector2d, true);
  }
}

void TKRNStretchFunc2d::Stretch(TKRNMultiPolygon2d& APolygon, const TKRNBox2d& ABox2d,
                                const TKRNVector2d& AVector2d) {
  for (int I = APolygon.Count() - 1; I >= 0; --I) {
    TKRNCustomPolygon2d* P = APolygon.GetItems(I);
    if (TKRNPositionFunc2d::BoxBoxPosition(P->Box(), ABox2d, KRNEpsilon) == pptLeave)
      continue;
    if (P->PolyType() == ptOrthoRectangle || P->PolyType() == ptRectangle) {
      auto* General = new TKRNPolygon2d(*P);
      APolygon.SetItems(I, General);
      P = General;
    }
    Stretch(*P, ABox2d, AVector2d);
  }
}

// ---------------------------------------------------------------------------
// Break

bool TKRNBreakFunc2d::Break(const TKRNCustomLine2d& ASeg, const TKRNVector2d& ARefPt,
                            TKRNPtr<TKRNCustomLine2d>& APart1, TKRNPtr<TKRNCustomLine2d>& APart2) {
  return BreakAt(ASeg, TKRNPositionFunc2d::ClosestPointTo(ARefPt, ASeg, true), APart1, APart2);
}

bool TKRNBreakFunc2d::BreakAt(const TKRNCustomLine2d& ASeg, const TKRNVector2d& ABreakPt,
                              TKRNPtr<TKRNCustomLine2d>& APart1, TKRNPtr<TKRNCustomLine2d>& APart2) {
  if (const auto* A = dynamic_cast<const TKRNArc2d*>(&ASeg); A && A->IsValidateArc())
    return BreakAt(A->StartPt(), A->EndPt(), A->Radius(), A->ArcType(), ABreakPt, APart1, APart2);
  return BreakAt(ASeg.StartPt(), ASeg.EndPt(), ABreakPt, APart1, APart2);
}

bool TKRNBreakFunc2d::BreakAt(const TKRNVector2d& ALineStartPt, const TKRNVector2d& ALineEndPt,
                              const TKRNVector2d& ABreakPt, TKRNPtr<TKRNCustomLine2d>& APart1,
                              TKRNPtr<TKRNCustomLine2d>& APart2) {
  APart1.reset();
  APart2.reset();
  if (PointIsSame(ABreakPt, ALineStartPt, KRNEpsilon) || PointIsSame(ABreakPt, ALineEndPt, KRNEpsilon))
    return false;
  APart1 = KRNMakeSegment(ALineStartPt, ABreakPt, 0, atLine);
  APart2 = KRNMakeSegment(ABreakPt, ALineEndPt, 0, atLine);
  return true;
}

bool TKRNBreakFunc2d::BreakAt(const TKRNVector2d& AArcStartPt, const TKRNVector2d& AArcEndPt, double ARadius,
                              TKRNArcType AArcType, const TKRNVector2d& ABreakPt, TKRNPtr<TKRNCustomLine2d>& APart1,
                              TKRNPtr<TKRNCustomLine2d>& APart2) {
  APart1.reset();
  APart2.reset();
  if (PointIsSame(ABreakPt, AArcStartPt, KRNEpsilon) || PointIsSame(ABreakPt, AArcEndPt, KRNEpsilon))
    return false;
  // Each part keeps the turn and radius; a part of a large arc that spans less than
  // half the circle is a small arc, or it would describe another arc.
  const TKRNVector2d C = TKRNArc2d::ArcCenterPt(AArcStartPt, AArcEndPt, ARadius, AArcType);
  const bool Clockwise = ArcTypeIsClockwise(AArcType);
  const auto PartType = [&](const TKRNVector2d& S, const TKRNVector2d& E) {
    const double Sweep = VectorAngleFromTo(VectorSub(S, C), VectorSub(E, C), Clockwise);
    const bool Large = Sweep > KRNPi;
    return Clockwise ? (Large ? atCL : atCS) : (Large ? atACL : atACS);
  };
  APart1 = KRNMakeSegment(AArcStartPt, ABreakPt, ARadius, PartType(AArcStartPt, ABreakPt));
  APart2 = KRNMakeSegment(ABreakPt, AArcEndPt, ARadius, PartType(ABreakPt, AArcEndPt));
  return true;
}
