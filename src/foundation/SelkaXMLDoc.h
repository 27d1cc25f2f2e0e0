#pragma once
// A small DOM reached through interfaces, with its own parser and writer. Two rules
// the drawing files rely on: reading an attribute that is absent adds it (empty),
// and an attribute name may be empty (written ="value" and found again by "").
// A node owns its children and attributes; a document owns its root.

#include "Classes.h"

#include <QString>

#include <functional>
#include <memory>

enum TXMLNodeType { ntElement, ntText, ntCData, ntComment };

class EXMLError : public Exception {
public:
  using Exception::Exception;
};

class IXMLNodeAttribute {
public:
  virtual ~IXMLNodeAttribute() = default;
  virtual QString Name() const = 0;
  virtual QString AsString() const = 0;
  // The value without a copy: valid until the attribute is changed or its node goes.
  virtual QStringView AsView() const = 0;
  virtual void SetAsString(const QString& AValue) = 0;
  // "True" (any case) is true; anything else false. Written "True" / "False".
  virtual bool AsBoolean() const = 0;
  virtual void SetAsBoolean(bool AValue) = 0;
  // 0 for an empty or unreadable value.
  virtual qint64 AsInteger() const = 0;
  virtual void SetAsInteger(qint64 AValue) = 0;
  // "." is the decimal separator; 0 for an empty or unreadable value.
  virtual double AsFloat() const = 0;
  virtual void SetAsFloat(double AValue) = 0;
};

class IXMLNodeAttributes {
public:
  virtual ~IXMLNodeAttributes() = default;
  virtual int Count() const = 0;
  // The attribute of that name (ignoring case), created empty when absent. The pointer
  // is valid until the next attribute is added to the node.
  virtual IXMLNodeAttribute* Add(const QString& AName) = 0;
  virtual IXMLNodeAttribute* GetItemsByName(const QString& AName) = 0;
  virtual int IndexOf(const QString& AName) const = 0;
  virtual IXMLNodeAttribute* GetItem(int AIndex) const = 0;
  virtual void Delete(int AIndex) = 0;
  virtual void Clear() = 0;
};

class IXMLNode;

class IXMLNodeList {
public:
  virtual ~IXMLNodeList() = default;
  virtual int Count() const = 0;
  virtual IXMLNode* GetNode(int AIndex) const = 0;
  // The first child element of that name (ignoring case), or null.
  virtual IXMLNode* FindNode(const QString& AName) const = 0;
  virtual IXMLNode* GetNodeByName(const QString& AName) const = 0;
  virtual int IndexOf(const IXMLNode* ANode) const = 0;
  virtual int IndexOf(const QString& AName) const = 0;
  virtual void Delete(int AIndex) = 0;
  virtual void Remove(IXMLNode* ANode) = 0;
  virtual void Move(int ACurIndex, int ANewIndex) = 0;
  virtual void Exchange(int AIndex1, int AIndex2) = 0;
  virtual void Clear() = 0;
};

class IXMLNode {
public:
  virtual ~IXMLNode() = default;
  virtual TXMLNodeType NodeType() const = 0;
  virtual QString Name() const = 0;
  virtual IXMLNode* Parent() const = 0;
  // An element's text is the text of its text and CDATA children.
  virtual QString Text() const = 0;
  virtual void SetText(const QString& AValue) = 0;
  virtual IXMLNodeAttributes& Attributes() = 0;
  virtual IXMLNodeList& ChildNodes() = 0;
  virtual IXMLNode* AddChild(const QString& AName, TXMLNodeType AType = ntElement) = 0;

  // Shorthands over Attributes().Add(name).
  QString AttrAsString(const QString& AName) { return Attributes().Add(AName)->AsString(); }
  QStringView AttrAsView(const QString& AName) { return Attributes().Add(AName)->AsView(); }
  qint64 AttrAsInteger(const QString& AName) { return Attributes().Add(AName)->AsInteger(); }
  double AttrAsFloat(const QString& AName) { return Attributes().Add(AName)->AsFloat(); }
  bool AttrAsBoolean(const QString& AName) { return Attributes().Add(AName)->AsBoolean(); }
  void SetAttr(const QString& AName, const QString& AValue) { Attributes().Add(AName)->SetAsString(AValue); }
  void SetAttr(const QString& AName, qint64 AValue) { Attributes().Add(AName)->SetAsInteger(AValue); }
  void SetAttrFloat(const QString& AName, double AValue) { Attributes().Add(AName)->SetAsFloat(AValue); }
  void SetAttrBool(const QString& AName, bool AValue) { Attributes().Add(AName)->SetAsBoolean(AValue); }
  bool HasAttr(const QString& AName) const;
};

// Called for each element below the root as soon as it is complete, with its depth
// (the root's children are at 2). Returning true takes the element out of the tree:
// large documents are then read without holding every node.
using TXMLElementDone = std::function<bool(IXMLNode& AElement, int ADepth)>;

// Writes elements straight into a document's text, laid out as the document lays out
// its nodes: many elements are written without being held as nodes. Per element:
// Begin, its attributes, at most one Text, End.
class TXMLElementOut {
public:
  TXMLElementOut(QString& AOut, bool AIndent, int ADepth) : FOut(AOut), FIndent(AIndent), FDepth(ADepth) {}
  // AName must stay until End.
  void Begin(const QString& AName);
  // The value is escaped.
  void Attr(const QString& AName, QStringView AValue);
  // ` name="` is written and the text returned for a value that needs no escaping;
  // EndRawAttr closes it.
  QString& BeginRawAttr(const QString& AName);
  void EndRawAttr() { FOut += u'"'; }
  // An empty text writes nothing.
  void Text(QStringView AValue);
  void End();

private:
  QString& FOut;
  const bool FIndent;
  const int FDepth;
  const QString* FName = nullptr;
  bool FHasText = false;
};

// Writes child AIndex of a parent while the document is written.
using TXMLChildWriter = std::function<void(TXMLElementOut& AOut, size_t AIndex)>;

class IXMLDocument {
public:
  virtual ~IXMLDocument() = default;
  virtual IXMLNode* Root() const = 0;
  virtual IXMLNode* AddRoot(const QString& AName) = 0;
  // Raise EXMLError on malformed text; the tree then holds what was read.
  virtual void LoadFromStream(TStream& AStream, bool AUseUtf8Optimize = true) = 0;
  virtual void LoadFromStreamWith(TStream& AStream, const TXMLElementDone& ADone) = 0;
  virtual void LoadFromFile(const QString& AFileName) = 0;
  virtual void LoadFromString(const QString& AText) = 0;
  virtual void SaveToStream(TStream& AStream) const = 0;
  // The children AParent holds are written first, then ACount elements by AWrite.
  virtual void SaveToStreamWith(TStream& AStream, IXMLNode& AParent, size_t ACount,
                                const TXMLChildWriter& AWrite) const = 0;
  virtual void SaveToFile(const QString& AFileName) const = 0;
  virtual QString SaveToString() const = 0;
  virtual QString Version() const = 0;
  virtual QString Encoding() const = 0;
  virtual bool AutoIndent() const = 0;
  virtual void SetAutoIndent(bool AValue) = 0;
  virtual bool IncludeHeader() const = 0;
  virtual void SetIncludeHeader(bool AValue) = 0;
};

// A new empty document: version "1.0", encoding "utf-8", header on.
std::unique_ptr<IXMLDocument> NewXMLDocument();
