#pragma once
// The pieces both drawing file forms share: the error class, a bounds-checked
// little-endian reader and a writer over a stream, the version-dependent XML tag
// table, and the text forms of numbers, points, vertex lists and encoded strings.

#include "Classes.h"
#include "KRNPolygon2d.h"
#include "SysUtils.h"

#include <QString>

#include <cstring>

class TVectorDrawing;
class TLayer;
class IXMLNode;
class TXMLElementOut;

class EVDEError : public Exception {
public:
  using Exception::Exception;
};

extern const QString SVDInvalidStream;  // "非法矢量图流格式"
extern const QString SVDInvalidXML;     // "XML格式非法"

// The typed reads over a source's Get<T>(), for the reader and its runs of fields.
template <class TSource>
class TVDTypedReads {
public:
  quint8 U8() { return Self().template Get<quint8>(); }
  qint16 I16() { return Self().template Get<qint16>(); }
  quint16 U16() { return Self().template Get<quint16>(); }
  qint32 I32() { return Self().template Get<qint32>(); }
  quint32 U32() { return Self().template Get<quint32>(); }
  float F32() { return Self().template Get<float>(); }
  double F64() { return Self().template Get<double>(); }
  TKRNVector2d Point() {
    const double X = F64();
    return {X, F64()};
  }

private:
  TSource& Self() { return static_cast<TSource&>(*this); }
};

// Reads with the file's version in mind; every short read or impossible length
// raises EVDEError "非法矢量图流格式", so a damaged stream cannot allocate wildly.
class TVDReader : public TVDTypedReads<TVDReader> {
public:
  TVDReader(TStream& AStream, const TVectorDrawing& ADrawing);
  // A reader over bytes in memory leaves the stream at the position it reached.
  ~TVDReader();
  TVDReader(const TVDReader&) = delete;
  TVDReader& operator=(const TVDReader&) = delete;

  void Read(void* ABuffer, qint64 ACount);

  // A run of fixed-size fields, taken with one bounds check and read off in order.
  class TFields : public TVDTypedReads<TFields> {
  public:
    explicit TFields(const char* AData) : FP(AData) {}

  private:
    friend class TVDTypedReads<TFields>;
    template <class T>
    T Get() {
      T V;
      std::memcpy(&V, FP, sizeof(T));
      FP += sizeof(T);
      return V;
    }
    const char* FP;
  };
  static constexpr qint64 MaxFields = 64;
  // The next ACount (at most MaxFields) bytes; they stay valid until the next Take.
  TFields Take(qint64 ACount) {
    if (FData && ACount <= FSize - FPos) {
      const char* P = FData + FPos;
      FPos += ACount;
      return TFields(P);
    }
    return TakeSlow(ACount);
  }

  // Length-prefixed strings (1, 2 or 4 bytes): UTF-8 from version 1.9 on, GBK below.
  QString Str(int ALenSize);
  // Always UTF-8 (header strings, layer names).
  QString Utf8Str(int ALenSize);
  // Str for a string that repeats from item to item (a font name): the same bytes as last
  // time give the same string again, sharing its text.
  QString SharedStr(int ALenSize);
  qint64 Remaining() const;
  // Guards a count of records of at least AMinSize bytes each.
  void CheckCount(qint64 ACount, int AMinSize);
  // The vertex list of the item parts: 16-bit count, then type, X, Y and a radius for arcs.
  void VertexList(TKRNVertex2dList& AList);

  const TVectorDrawing& Drawing() const { return FDrawing; }
  // Takes the facts below from the drawing's version, once it holds the stream's.
  void VersionRead();
  // StrToFloat of the version string, compared plainly.
  double VersionNumber() const { return FVersionNumber; }
  // Items carry ExtData in every version but "1.0".
  bool ItemsHaveExtData() const { return FItemsHaveExtData; }
  // "1.0" and "1.1": one mark size and a mark position instead of two marks.
  bool OldLongTags() const { return FOldLongTags; }
  // From 2.2 on (tolerance 0.001), texts carry a float height.
  bool TextsHaveFloatHeight() const { return FTextsHaveFloatHeight; }
  // The drawing's layer of that ID, or null; the layers do not change while items are read.
  TLayer* Layer(int AID);

private:
  friend class TVDTypedReads<TVDReader>;
  template <class T>
  T Get() {
    T V;
    if (FData && FSize - FPos >= qint64(sizeof(T))) {
      std::memcpy(&V, FData + FPos, sizeof(T));
      FPos += qint64(sizeof(T));
    } else {
      Read(&V, sizeof(T));
    }
    return V;
  }
  QByteArray Bytes(int ALenSize);
  // A string's length prefix of 1, 2 or 4 bytes.
  quint32 Length(int ALenSize);
  TFields TakeSlow(qint64 ACount);
  char FFieldBuffer[MaxFields];
  TStream& FStream;
  const TVectorDrawing& FDrawing;
  double FVersionNumber = 0;
  bool FItemsHaveExtData = true, FOldLongTags = false, FTextsHaveFloatHeight = false, FUtf8Strings = false;
  QByteArray FSharedBytes;
  QString FShared;
  bool FHasShared = false;
  int FLastLayerID = 0;
  TLayer* FLastLayer = nullptr;
  // Set when the stream holds its bytes in memory: reads then copy from there directly.
  const char* FData = nullptr;
  qint64 FSize = 0, FPos = 0;
};

class TVDWriter {
public:
  explicit TVDWriter(TStream& AStream) : FStream(AStream) {}
  void Write(const void* ABuffer, qint64 ACount) { FStream.WriteBuffer(ABuffer, ACount); }
  void U8(quint8 V) { Write(&V, 1); }
  void I16(qint16 V) { Write(&V, 2); }
  void U16(quint16 V) { Write(&V, 2); }
  void I32(qint32 V) { Write(&V, 4); }
  void U32(quint32 V) { Write(&V, 4); }
  void F32(float V) { Write(&V, 4); }
  void F64(double V) { Write(&V, 8); }
  void Point(const TKRNVector2d& P) {
    F64(P.X);
    F64(P.Y);
  }
  // UTF-8; a length that does not fit is cut with its bytes.
  void Str(const QString& S, int ALenSize);
  void VertexList(const TKRNVertex2dList& AList);

private:
  TStream& FStream;
};

// The process-wide tag table of the XML form.
struct TVDTags {
  QString Item, ItemType, ID, LayerID, Color, InsertPt, PointSize, PointStyle, Line, CenterPt, Radius, ArcType,
      LineWidth, LineStyle, XPoly, Polyline, FillStyle, Text, Angle, FontName, FontHeight, FontStyle, Transparent,
      BackColor, HorzAlignment, VertAlignment;
  // Set by the short table only.
  QString StartMarkStyle, EndMarkStyle, StartMarkSize, EndMarkSize, RelationID, EnableType, CurrentScale, PrevItemID,
      NextItemID;
  // Set by the long table only: empty until an old file was read in this process.
  QString FontFloatHeight;
};
TVDTags& VDTags();
// Long tags for versions "1.0" and "1.1", short ones otherwise.
void SetVDTagTable(const QString& AVersion);
bool IsOldLongTagVersion(const QString& AVersion);

// "0.######" numbers; "x,y" points; "x1,y1,x2,y2" lines. Damaged fields read as 0.
QString VDNumberText(double AValue);
QString VDPointText(const TKRNVector2d& P);
TKRNVector2d VDTextPoint(QStringView AText);
QString VDLineText(const TKRNVector2d& A, const TKRNVector2d& B);
void VDTextLine(QStringView AText, TKRNVector2d& A, TKRNVector2d& B);
// "x,y,r,t" per vertex joined by ";"; ALineOnly leaves out arc and ellipse vertices.
QString VDVertexText(const TKRNVertex2dList& AList, bool ALineOnly);
void VDTextVertices(QStringView AText, TKRNVertex2dList& AList);
// Base64 of UTF-16LE on writing; reading by the file version against AThreshold.
QString VDEncodeText(const QString& AText);
QString VDDecodeText(const QString& AValue, const TVectorDrawing& ADrawing, double AThreshold);

// An item's XML attributes and text go through this: onto a node (a drawing kept in
// another document) or straight into the text of a file being written. Attributes
// first, then at most one Text.
class TVDXMLOut {
public:
  virtual ~TVDXMLOut() = default;
  virtual void Str(const QString& AName, const QString& AValue) = 0;
  virtual void Text(const QString& AValue) = 0;
  void Int(const QString& AName, qint64 AValue);
  // FloatToStr's text.
  void Float(const QString& AName, double AValue);
  void Bool(const QString& AName, bool AValue);
  void Point(const QString& AName, const TKRNVector2d& P);
  void Line(const QString& AName, const TKRNVector2d& A, const TKRNVector2d& B);
  void Vertices(const QString& AName, const TKRNVertex2dList& AList, bool ALineOnly);

protected:
  // A value that needs no escaping is appended to the text BeginRaw returns; EndRaw
  // closes the attribute.
  virtual QString& BeginRaw(const QString& AName) = 0;
  virtual void EndRaw() = 0;
};

class TVDNodeOut final : public TVDXMLOut {
public:
  explicit TVDNodeOut(IXMLNode& ANode) : FNode(ANode) {}
  void Str(const QString& AName, const QString& AValue) override;
  void Text(const QString& AValue) override;

protected:
  QString& BeginRaw(const QString& AName) override;
  void EndRaw() override;

private:
  IXMLNode& FNode;
  const QString* FName = nullptr;
  QString FValue;
};

// The same text as a node written by the document, with no node made.
class TVDTextOut final : public TVDXMLOut {
public:
  explicit TVDTextOut(TXMLElementOut& AOut) : FOut(AOut) {}
  void Str(const QString& AName, const QString& AValue) override;
  void Text(const QString& AValue) override;

protected:
  QString& BeginRaw(const QString& AName) override;
  void EndRaw() override;

private:
  TXMLElementOut& FOut;
};
