#include "SelkaHashUtils.h"

template <typename K, typename V>
TKeyHashBase<K, V>::TKeyHashBase(quint32 ADefBucketCount, bool AAllowDupKey)
    : FAllowDupKey(AAllowDupKey), FDefBucketCount(ADefBucketCount == 0 ? 1 : ADefBucketCount) {
  Rehash(FDefBucketCount);
}

template <typename K, typename V>
TKeyHashBase<K, V>::~TKeyHashBase() {
  FreeNodes();
}

template <typename K, typename V>
void TKeyHashBase<K, V>::FreeNodes() {
  for (TNode*& Head : FBuckets) {
    while (Head) {
      TNode* N = Head;
      Head = N->Next;
      delete N;
    }
  }
  FNodeCount = 0;
}

template <typename K, typename V>
void TKeyHashBase<K, V>::Rehash(quint32 ANewCount) {
  if (ANewCount % 2 == 0) ++ANewCount;
  std::vector<TNode*> Old(ANewCount, nullptr);
  Old.swap(FBuckets);
  for (TNode* Head : Old) {
    while (Head) {
      TNode* N = Head;
      Head = N->Next;
      TNode*& Bucket = FBuckets[HashOf(N->Key) % ANewCount];
      N->Next = Bucket;
      Bucket = N;
    }
  }
}

template <typename K, typename V>
void TKeyHashBase<K, V>::Grow() {
  const quint32 N = BucketCount();
  if (N < 9) Rehash(N + 4);
  else if (N < 65) Rehash(N + 16);
  else Rehash(N + N / 2);
}

template <typename K, typename V>
typename TKeyHashBase<K, V>::TNode* TKeyHashBase<K, V>::Add(const K& AKey, const V& AValue) {
  if (!FAllowDupKey && FindNode(AKey))
    throw Exception(QStringLiteral("键[%1]对应的节点已存在").arg(KeyText(AKey)));
  if (FBucketsAutoGrow && FNodeCount == BucketCount()) Grow();
  TNode* N = new TNode{nullptr, AKey, AValue};
  TNode*& Bucket = FBuckets[HashOf(AKey) % BucketCount()];
  N->Next = Bucket;
  Bucket = N;
  ++FNodeCount;
  return N;
}

template <typename K, typename V>
typename TKeyHashBase<K, V>::TNode* TKeyHashBase<K, V>::FindNode(const K& AKey) const {
  if (FBuckets.empty()) return nullptr;
  for (TNode* N = FBuckets[HashOf(AKey) % BucketCount()]; N; N = N->Next)
    if (SameKey(N->Key, AKey)) return N;
  return nullptr;
}

template <typename K, typename V>
typename TKeyHashBase<K, V>::TNode* TKeyHashBase<K, V>::FindNode(const K& AKey, const V& AValue) const {
  if (FBuckets.empty()) return nullptr;
  for (TNode* N = FBuckets[HashOf(AKey) % BucketCount()]; N; N = N->Next)
    if (SameKey(N->Key, AKey) && N->Value == AValue) return N;
  return nullptr;
}

template <typename K, typename V>
bool TKeyHashBase<K, V>::Modify(const K& AKey, const V& AValue) {
  TNode* N = FindNode(AKey);
  if (!N) return false;
  N->Value = AValue;
  return true;
}

template <typename K, typename V>
V TKeyHashBase<K, V>::ValueOf(const K& AKey) const {
  const TNode* N = FindNode(AKey);
  return N ? N->Value : V{};
}

template <typename K, typename V>
typename TKeyHashBase<K, V>::TNode* TKeyHashBase<K, V>::Unlink(const K& AKey, const V* AValue) {
  if (FBuckets.empty()) return nullptr;
  TNode** Link = &FBuckets[HashOf(AKey) % BucketCount()];
  for (; *Link; Link = &(*Link)->Next) {
    TNode* N = *Link;
    if (SameKey(N->Key, AKey) && (!AValue || N->Value == *AValue)) {
      *Link = N->Next;
      --FNodeCount;
      return N;
    }
  }
  return nullptr;
}

template <typename K, typename V>
void TKeyHashBase<K, V>::Remove(const K& AKey) {
  delete Unlink(AKey, nullptr);
}

template <typename K, typename V>
void TKeyHashBase<K, V>::Remove(const K& AKey, const V& AValue) {
  delete Unlink(AKey, &AValue);
}

template <typename K, typename V>
void TKeyHashBase<K, V>::Clear() {
  FreeNodes();
  FBuckets.clear();
  Rehash(FDefBucketCount);
}

template <typename K, typename V>
std::vector<typename TKeyHashBase<K, V>::TNode*> TKeyHashBase<K, V>::GetNodeArray() const {
  std::vector<TNode*> R;
  R.reserve(FNodeCount);
  for (TNode* Head : FBuckets)
    for (TNode* N = Head; N; N = N->Next) R.push_back(N);
  return R;
}

template class TKeyHashBase<QString, qintptr>;
template class TKeyHashBase<qintptr, qintptr>;
template class TKeyHashBase<qintptr, QString>;

quint32 TStrKeyHash::StrHash(const QString& AKey, bool ACaseSensitive) {
  quint32 H = 0;
  for (const QChar C : AKey) {
    const quint32 U = ACaseSensitive ? C.unicode() : AsciiUpCase(C).unicode();
    H = H * 95u + U - 31u;
  }
  return H;
}

bool TStrKeyHash::SameKey(const QString& A, const QString& B) const {
  return FKeyCaseSensitive ? A == B : SameText(A, B);
}
