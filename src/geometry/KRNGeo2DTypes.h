#pragma once
// Segments: the straight line and the arc stored by end points, radius and arc
// type (the centre is always derived), and the reference-counted edge handle.
// TKRNCustomLine2d implements the straight behaviour; an arc whose type is atLine
// or whose centre is invalid falls back on it.

#include "KRN2dObject.h"
#include "KRNCommon2d.h"
#include "KRNStream.h"

#include <string>
#include <vector>

class TKRNCustomLine2d : public TKRN2dObject {
public:
  TKRNCustomLine2d() = default;
  TKRNCustomLine2d(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt) : FStartPt(AStartPt), FEndPt(AEndPt) {}

  const TKRNVector2d& StartPt() const { return FStartPt; }
  const TKRNVector2d& EndPt() const { return FEndPt; }
  void SetStartPt(const TKRNVector2d& P) { FStartPt = P; }
  void SetEndPt(const TKRNVector2d& P) { FEndPt = P; }

  virtual void Assign(const TKRNCustomLine2d& ALine);
  // "(%g, %g, %g, %g, %g, %s)": start, end, radius, arc word.
  virtual std::string AsString() const;
  virtual TKRNBox2d Box() const;
  virtual TKRNPtr<TKRNCustomLine2d> Clone() const;
  // Length of the part between two Y levels; a horizontal segment lying on a level
  // counts only with ANeedOnLine.
  virtual double LengthBetweenY(double AY1, double AY2, bool ANeedOnLine) const;
  // Signed area between the segment and the X axis; anticlockwise loops sum positive.
  virtual double DropDownArea() const;
  virtual TKRNVector2d EndVector() const;
  virtual TKRNPoint2dDynArray GetSamplePoint(int ASampleRate) const;
  virtual void Inverse();
  virtual void InverseXY();
  virtual bool IsArcType() const { return false; }
  virtual double Length() const;
  // New segments with the chosen end moved (ffForward: the end point).
  virtual TKRNPtr<TKRNCustomLine2d> Extend(double ALength, TKRNExtendDirection ADir) const;
  virtual TKRNPtr<TKRNCustomLine2d> ExtendTo(const TKRNVector2d& APoint, TKRNExtendDirection ADir) const;
  virtual void InnerExtendTo(const TKRNVector2d& APoint, TKRNExtendDirection ADir);
  // APoint moved ALength along the segment's course (backwards for ffBack).
  virtual TKRNVector2d GetExtendPt(const TKRNVector2d& APoint, double ALength, TKRNExtendDirection ADir) const;
  // False when the stream is short.
  virtual bool LoadFromStream(TKRNStream& AStream);
  virtual void SaveToStream(TKRNStream& AStream) const;
  virtual TKRNVector2d MiddlePoint() const;
  virtual bool IsEqualTo(const TKRNCustomLine2d& ALine, double AEpsilon = KRNEpsilon) const;
  virtual TKRNVector2d StartVector() const;
  virtual TKRNVector2d TangentVectorAtLength(double ALen) const;
  virtual TKRNVector2d TangentVectorAtPoint(const TKRNVector2d& APt) const;
  virtual TSegType SegType() const { return stLine2d; }

  double Angle() const { return VectorAngle(VectorSub(FEndPt, FStartPt)); }
  bool IsZeroLength(double AEpsilon = KRNEpsilon) const { return PointIsSame(FStartPt, FEndPt, AEpsilon); }
  // In place: both ends, the end point, or the start point moved outwards by ALength.
  void ExtendBoth(double ALength);
  void ExtendForward(double ALength);
  void ExtendBack(double ALength);

  // Arc data of any segment: atLine and 0 for a straight one.
  virtual TKRNArcType ArcType() const { return atLine; }
  virtual double Radius() const { return 0; }

protected:
  TKRNVector2d FStartPt, FEndPt;
};

class TKRNLine2d : public TKRNCustomLine2d {
public:
  using TKRNCustomLine2d::TKRNCustomLine2d;
  TKRN2dObjectType GetType() const override { return otLine2d; }
  void Initialize() override { FStartPt = FEndPt = TKRNVector2d{}; }
  void SetParams(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt) {
    FStartPt = AStartPt;
    FEndPt = AEndPt;
  }
};

class TKRNArc2d : public TKRNCustomLine2d {
public:
  TKRNArc2d() = default;
  TKRNArc2d(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ARadius, TKRNArcType AArcType)
      : TKRNCustomLine2d(AStartPt, AEndPt), FArcType(AArcType), FRadius(ARadius) {}

  TKRNArcType ArcType() const override { return FArcType; }
  double Radius() const override { return FRadius; }
  void SetArcType(TKRNArcType T) { FArcType = T; }
  void SetRadius(double R) { FRadius = R; }

  // Class operations on raw parameters.
  static TKRNBox2d ArcBox(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T);
  static TKRNVector2d ArcCenterPt(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T);
  static double ArcSweep(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T);
  static double ArcLength(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T);
  static TKRNVector2d ArcMiddlePoint(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T);
  static TKRNPoint2dDynArray ArcSamplePoint(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T,
                                            int ASampleRate);
  // False, with the chord's midpoint, when the arc is not valid.
  static bool CalcCenterPt(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T, TKRNVector2d& C);
  static bool IsValidArc(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T);
  static bool IsValidaty(const TKRNVector2d& S, const TKRNVector2d& E, double R, TKRNArcType T);
  // A straight line when the points are collinear or the radius passes 1e7.
  static TKRNPtr<TKRNCustomLine2d> CreateBy3Points(const TKRNVector2d& S, const TKRNVector2d& M,
                                                    const TKRNVector2d& E);

  TKRNVector2d CenterPt() const { return ArcCenterPt(FStartPt, FEndPt, FRadius, FArcType); }
  bool CenterPt(TKRNVector2d& C) const { return CalcCenterPt(FStartPt, FEndPt, FRadius, FArcType, C); }
  bool Clockwise() const { return ArcTypeIsClockwise(FArcType); }
  bool IsValidateArc() const { return IsArcType() && IsValidArc(FStartPt, FEndPt, FRadius, FArcType); }
  // Turns an invalid arc into a straight segment.
  void Validate();
  bool Validaty() const { return IsValidaty(FStartPt, FEndPt, FRadius, FArcType); }
  double Sweep() const { return ArcSweep(FStartPt, FEndPt, FRadius, FArcType); }

  void Assign(const TKRNCustomLine2d& ALine) override;
  std::string AsString() const override;
  TKRNBox2d Box() const override;
  TKRNPtr<TKRNCustomLine2d> Clone() const override;
  double LengthBetweenY(double AY1, double AY2, bool ANeedOnLine) const override;
  double DropDownArea() const override;
  TKRNVector2d EndVector() const override;
  TKRNPoint2dDynArray GetSamplePoint(int ASampleRate) const override;
  void Inverse() override;
  void InverseXY() override;
  bool IsArcType() const override { return FArcType != atLine; }
  double Length() const override;
  TKRNPtr<TKRNCustomLine2d> Extend(double ALength, TKRNExtendDirection ADir) const override;
  TKRNPtr<TKRNCustomLine2d> ExtendTo(const TKRNVector2d& APoint, TKRNExtendDirection ADir) const override;
  void InnerExtendTo(const TKRNVector2d& APoint, TKRNExtendDirection ADir) override;
  TKRNVector2d GetExtendPt(const TKRNVector2d& APoint, double ALength, TKRNExtendDirection ADir) const override;
  bool LoadFromStream(TKRNStream& AStream) override;
  void SaveToStream(TKRNStream& AStream) const override;
  TKRNVector2d MiddlePoint() const override;
  bool IsEqualTo(const TKRNCustomLine2d& ALine, double AEpsilon = KRNEpsilon) const override;
  TKRNVector2d StartVector() const override;
  TKRNVector2d TangentVectorAtLength(double ALen) const override;
  TKRNVector2d TangentVectorAtPoint(const TKRNVector2d& APt) const override;
  TSegType SegType() const override { return IsArcType() ? stArc2d : stLine2d; }

private:
  // True when this arc should act as an arc (a real type and a valid centre).
  bool ActsAsArc() const { return IsValidateArc(); }

  TKRNArcType FArcType = atLine;
  double FRadius = 0;
};

// A handle on a short-lived edge of a path; owns its line.
class IKRNEdge2d {
public:
  virtual ~IKRNEdge2d() = default;
  virtual TKRNCustomLine2d* GetLine() const = 0;
};
using TKRNEdge2dRef = std::shared_ptr<IKRNEdge2d>;

class TKRNEdge2d : public TKRN2dObject, public IKRNEdge2d {
public:
  ~TKRNEdge2d() override { Initialize(); }
  TKRN2dObjectType GetType() const override { return otEdge2d; }
  // Gives the line back to the pool.
  void Initialize() override;
  TKRNCustomLine2d* GetLine() const override { return FLine; }
  void SetLine(TKRNCustomLine2d* ALine);

private:
  TKRNCustomLine2d* FLine = nullptr;
};

// An object list of segments, owning them.
class TKRNSeg2dList {
public:
  int Count() const { return int(FItems.size()); }
  TKRNCustomLine2d* operator[](int I) const { return FItems[size_t(I)].get(); }
  void Add(TKRNPtr<TKRNCustomLine2d> ASeg) { FItems.push_back(std::move(ASeg)); }
  void Delete(int I) { FItems.erase(FItems.begin() + I); }
  void Clear() { FItems.clear(); }

private:
  std::vector<TKRNPtr<TKRNCustomLine2d>> FItems;
};

using TKRNCustomLine2dDynArray = std::vector<TKRNCustomLine2d*>;

// A new segment of the right class for the arc data: a pooled line for atLine.
TKRNPtr<TKRNCustomLine2d> KRNMakeSegment(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ARadius,
                                         TKRNArcType AArcType);
