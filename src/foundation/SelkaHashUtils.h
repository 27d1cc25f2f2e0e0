#pragma once
// Chained hash tables keyed by string or integer. All share one bucket scheme:
// odd bucket counts, new nodes at the head of their chain, growth when the node
// count reaches the bucket count. Nodes are allocated one by one and reused on rehash.

#include "SysUtils.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

template <typename K, typename V>
struct THashNode {
  THashNode* Next = nullptr;
  K Key{};
  V Value{};
};

using TStrKeyHashNode = THashNode<QString, qintptr>;
using PStrKeyHashNode = TStrKeyHashNode*;
using TIntKeyHashNode = THashNode<qintptr, qintptr>;
using PIntKeyHashNode = TIntKeyHashNode*;
using TIntKeyStrHashNode = THashNode<qintptr, QString>;
using PIntKeyStrHashNode = TIntKeyStrHashNode*;

// Snapshot of the nodes at creation; MoveNext then GetCurrent, as a for-in loop sees them.
template <typename TNode>
class THashEnumerator {
public:
  explicit THashEnumerator(std::vector<TNode*> ANodes) : FNodes(std::move(ANodes)) {}
  bool MoveNext() { return ++FIndex < int(FNodes.size()); }
  TNode* GetCurrent() const { return FNodes[size_t(FIndex)]; }

private:
  int FIndex = -1;
  std::vector<TNode*> FNodes;
};

using TStrKeyHashEnumerator = THashEnumerator<TStrKeyHashNode>;
using TIntKeyHashEnumerator = THashEnumerator<TIntKeyHashNode>;
using TIntKeyStrHashEnumerator = THashEnumerator<TIntKeyStrHashNode>;

// The shared logic; descendants give the hash and the key comparison.
template <typename K, typename V>
class TKeyHashBase {
public:
  using TNode = THashNode<K, V>;

  TKeyHashBase(quint32 ADefBucketCount, bool AAllowDupKey);
  virtual ~TKeyHashBase();
  TKeyHashBase(const TKeyHashBase&) = delete;
  TKeyHashBase& operator=(const TKeyHashBase&) = delete;

  // Raises Exception "键[%s]对应的节点已存在" for a duplicate when duplicates are off.
  TNode* Add(const K& AKey, const V& AValue);
  TNode* FindNode(const K& AKey) const;
  TNode* FindNode(const K& AKey, const V& AValue) const;
  bool Modify(const K& AKey, const V& AValue);
  V ValueOf(const K& AKey) const;
  void Remove(const K& AKey);
  void Remove(const K& AKey, const V& AValue);
  void Clear();
  std::vector<TNode*> GetNodeArray() const;
  THashEnumerator<TNode> GetEnumerator() const { return THashEnumerator<TNode>(GetNodeArray()); }

  quint32 Count() const { return FNodeCount; }
  quint32 BucketCount() const { return quint32(FBuckets.size()); }
  bool AllowDupKey() const { return FAllowDupKey; }
  bool BucketsAutoGrow() const { return FBucketsAutoGrow; }
  void SetBucketsAutoGrow(bool AValue) { FBucketsAutoGrow = AValue; }
  void Rehash(quint32 ANewCount);

protected:
  virtual quint32 HashOf(const K& AKey) const = 0;
  virtual bool SameKey(const K& A, const K& B) const = 0;
  virtual void Grow();
  virtual QString KeyText(const K& AKey) const = 0;

  bool FKeyCaseSensitive = false;

private:
  TNode* Unlink(const K& AKey, const V* AValue);
  void FreeNodes();

  bool FAllowDupKey;
  bool FBucketsAutoGrow = true;
  quint32 FDefBucketCount;
  quint32 FNodeCount = 0;
  std::vector<TNode*> FBuckets;
};

extern template class TKeyHashBase<QString, qintptr>;
extern template class TKeyHashBase<qintptr, qintptr>;
extern template class TKeyHashBase<qintptr, QString>;

class TStrKeyHash : public TKeyHashBase<QString, qintptr> {
public:
  explicit TStrKeyHash(quint32 ADefBucketCount = 10, bool AAllowDupKey = false)
      : TKeyHashBase(ADefBucketCount, AAllowDupKey) {}
  bool KeyCaseSensitive() const { return FKeyCaseSensitive; }
  // Takes effect for keys added afterwards; set it while the table is empty.
  void SetKeyCaseSensitive(bool AValue) { FKeyCaseSensitive = AValue; }

  static quint32 StrHash(const QString& AKey, bool ACaseSensitive);

protected:
  quint32 HashOf(const QString& AKey) const override { return StrHash(AKey, FKeyCaseSensitive); }
  bool SameKey(const QString& A, const QString& B) const override;
  QString KeyText(const QString& AKey) const override { return AKey; }
};

class TIntKeyHash : public TKeyHashBase<qintptr, qintptr> {
public:
  explicit TIntKeyHash(quint32 ADefBucketCount = 10, bool AAllowDupKey = false)
      : TKeyHashBase(ADefBucketCount, AAllowDupKey) {}
  static quint32 IntHash(qintptr AKey) { return quint32(quint64(AKey)) ^ quint32(quint64(AKey) >> 32); }

protected:
  quint32 HashOf(const qintptr& AKey) const override { return IntHash(AKey); }
  bool SameKey(const qintptr& A, const qintptr& B) const override { return A == B; }
  QString KeyText(const qintptr& AKey) const override { return QString::number(AKey); }
};

class TIntKeyStrHash : public TKeyHashBase<qintptr, QString> {
public:
  explicit TIntKeyStrHash(quint32 ADefBucketCount = 10, bool AAllowDupKey = false)
      : TKeyHashBase(ADefBucketCount, AAllowDupKey) {}

protected:
  quint32 HashOf(const qintptr& AKey) const override { return TIntKeyHash::IntHash(AKey); }
  bool SameKey(const qintptr& A, const qintptr& B) const override { return A == B; }
  QString KeyText(const qintptr& AKey) const override { return QString::number(AKey); }
};

// String key to an interface; the table holds a reference. No duplicate keys.
template <typename I>
class TStrKeyIntfHash {
public:
  // Return false from the callback to stop the walk.
  using TInterfaceIterator = std::function<bool(const QString& AKey, const std::shared_ptr<I>& AIntf)>;

  explicit TStrKeyIntfHash(quint32 ADefBucketCount = 10) : FContainer(ADefBucketCount, false) {}
  ~TStrKeyIntfHash() { Clear(); }
  TStrKeyIntfHash(const TStrKeyIntfHash&) = delete;
  TStrKeyIntfHash& operator=(const TStrKeyIntfHash&) = delete;

  std::shared_ptr<I> Find(const QString& AKey) const {
    const PStrKeyHashNode N = FContainer.FindNode(AKey);
    return N ? *Slot(N) : nullptr;
  }
  PStrKeyHashNode HashNode(const QString& AKey) const { return FContainer.FindNode(AKey); }
  // Replaces the value of an existing key, or adds the key.
  void SetValue(const QString& AKey, std::shared_ptr<I> AIntf) {
    if (const PStrKeyHashNode N = FContainer.FindNode(AKey)) *Slot(N) = std::move(AIntf);
    else FContainer.Add(AKey, reinterpret_cast<qintptr>(new std::shared_ptr<I>(std::move(AIntf))));
  }
  void Remove(const QString& AKey) {
    if (const PStrKeyHashNode N = FContainer.FindNode(AKey)) {
      delete Slot(N);
      FContainer.Remove(AKey);
    }
  }
  void Clear() {
    for (const PStrKeyHashNode N : FContainer.GetNodeArray()) delete Slot(N);
    FContainer.Clear();
  }
  void Iterate(const TInterfaceIterator& AIterator) const {
    for (const PStrKeyHashNode N : FContainer.GetNodeArray())
      if (!AIterator(N->Key, *Slot(N))) return;
  }
  std::vector<std::shared_ptr<I>> GetInterfaceArray() const {
    std::vector<std::shared_ptr<I>> R;
    for (const PStrKeyHashNode N : FContainer.GetNodeArray()) R.push_back(*Slot(N));
    return R;
  }
  QStringList GetKeyArray() const {
    QStringList R;
    for (const PStrKeyHashNode N : FContainer.GetNodeArray()) R << N->Key;
    return R;
  }
  quint32 Count() const { return FContainer.Count(); }

private:
  static std::shared_ptr<I>* Slot(PStrKeyHashNode N) { return reinterpret_cast<std::shared_ptr<I>*>(N->Value); }
  TStrKeyHash FContainer;
};

// String key to an object, owned (freed on Remove and Clear) when FOwnObjects.
template <typename T>
class TStrKeyObjHash {
public:
  explicit TStrKeyObjHash(quint32 ADefBucketCount = 10, bool AAllowDupKey = false, bool AOwnObjects = true)
      : FContainer(ADefBucketCount, AAllowDupKey), FOwnObjects(AOwnObjects) {}
  ~TStrKeyObjHash() { Clear(); }
  TStrKeyObjHash(const TStrKeyObjHash&) = delete;
  TStrKeyObjHash& operator=(const TStrKeyObjHash&) = delete;

  PStrKeyHashNode Add(const QString& AKey, T* AObject) {
    return FContainer.Add(AKey, reinterpret_cast<qintptr>(AObject));
  }
  T* Find(const QString& AKey) const {
    const PStrKeyHashNode N = FContainer.FindNode(AKey);
    return N ? reinterpret_cast<T*>(N->Value) : nullptr;
  }
  void Remove(const QString& AKey) {
    if (const PStrKeyHashNode N = FContainer.FindNode(AKey)) {
      T* Obj = reinterpret_cast<T*>(N->Value);
      FContainer.Remove(AKey, N->Value);
      if (FOwnObjects) delete Obj;
    }
  }
  void Clear() {
    if (FOwnObjects)
      for (const PStrKeyHashNode N : FContainer.GetNodeArray()) delete reinterpret_cast<T*>(N->Value);
    FContainer.Clear();
  }
  quint32 Count() const { return FContainer.Count(); }
  bool OwnObjects() const { return FOwnObjects; }
  TStrKeyHash& Container() { return FContainer; }

private:
  TStrKeyHash FContainer;
  bool FOwnObjects;
};
