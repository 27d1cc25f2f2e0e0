#include "SelkaHashUtils.h"

#include <gtest/gtest.h>

#include <set>

TEST(TStrKeyHash, BucketCountsGrowByTheRule) {
  const struct {
    quint32 Def;
    int Nodes;
    quint32 Buckets;
  } Cases[] = {{10, 0, 11}, {10, 11, 11}, {10, 12, 27}, {0, 1, 1}, {0, 2, 5},
               {0, 6, 9},   {0, 10, 25},  {64, 65, 65}, {64, 66, 97}, {8, 10, 25}, {3, 4, 7}};
  for (const auto& C : Cases) {
    SCOPED_TRACE(testing::Message() << C.Def << "/" << C.Nodes);
    TStrKeyHash H(C.Def, false);
    for (int I = 0; I < C.Nodes; ++I) H.Add(QString::number(I), I);
    EXPECT_EQ(H.BucketCount(), C.Buckets);
    EXPECT_EQ(H.Count(), quint32(C.Nodes));
    for (int I = 0; I < C.Nodes; ++I) ASSERT_EQ(H.ValueOf(QString::number(I)), I);
  }
}

TEST(TStrKeyHash, NoGrowthWhenAutoGrowIsOff) {
  TStrKeyHash H(2, false);
  H.SetBucketsAutoGrow(false);
  for (int I = 0; I < 50; ++I) H.Add(QString::number(I), I);
  EXPECT_EQ(H.BucketCount(), 3u);
  EXPECT_EQ(H.ValueOf(QStringLiteral("49")), 49);
}

TEST(TStrKeyHash, HashIsTheDocumentedPolynomial) {
  // h = h * 95 + c - 31, wrapping at 32 bits, upper-cased unless case-sensitive
  EXPECT_EQ(TStrKeyHash::StrHash(QStringLiteral("A"), true), 65u - 31u);
  EXPECT_EQ(TStrKeyHash::StrHash(QStringLiteral("ab"), true), (97u - 31u) * 95u + 98u - 31u);
  EXPECT_EQ(TStrKeyHash::StrHash(QStringLiteral("ab"), false), TStrKeyHash::StrHash(QStringLiteral("AB"), true));
  quint32 H = 0;
  const QString Long(40, u'z');
  for (const QChar C : Long) H = H * 95u + C.unicode() - 31u;
  EXPECT_EQ(TStrKeyHash::StrHash(Long, true), H);
}

TEST(TStrKeyHash, DuplicateKeyRaisesUnlessAllowed) {
  TStrKeyHash H(10, false);
  H.Add(QStringLiteral("钢筋"), 1);
  try {
    H.Add(QStringLiteral("钢筋"), 2);
    FAIL() << "no exception";
  } catch (const Exception& E) {
    EXPECT_EQ(E.Message(), QStringLiteral("键[钢筋]对应的节点已存在"));
  }
  EXPECT_EQ(H.Count(), 1u);
  EXPECT_EQ(H.ValueOf(QStringLiteral("钢筋")), 1);
}

TEST(TStrKeyHash, KeyCaseFollowsTheFlag) {
  TStrKeyHash Insensitive(10, false);
  Insensitive.Add(QStringLiteral("Key"), 1);
  EXPECT_EQ(Insensitive.ValueOf(QStringLiteral("KEY")), 1);
  EXPECT_THROW(Insensitive.Add(QStringLiteral("kEy"), 2), Exception);

  TStrKeyHash Sensitive(10, false);
  Sensitive.SetKeyCaseSensitive(true);
  Sensitive.Add(QStringLiteral("Key"), 1);
  Sensitive.Add(QStringLiteral("KEY"), 2);
  EXPECT_EQ(Sensitive.ValueOf(QStringLiteral("Key")), 1);
  EXPECT_EQ(Sensitive.ValueOf(QStringLiteral("KEY")), 2);
  EXPECT_EQ(Sensitive.FindNode(QStringLiteral("key")), nullptr);
}

TEST(TStrKeyHash, DuplicatesFindModifyAndRemoveTheNewest) {
  TStrKeyHash H(10, true);
  H.Add(QStringLiteral("a"), 1);
  H.Add(QStringLiteral("a"), 2);
  H.Add(QStringLiteral("a"), 3);
  EXPECT_EQ(H.ValueOf(QStringLiteral("a")), 3);
  EXPECT_TRUE(H.Modify(QStringLiteral("a"), 30));
  EXPECT_NE(H.FindNode(QStringLiteral("a"), 30), nullptr);
  EXPECT_NE(H.FindNode(QStringLiteral("a"), 1), nullptr);
  H.Remove(QStringLiteral("a"), 1);  // a chosen one by value
  EXPECT_EQ(H.FindNode(QStringLiteral("a"), 1), nullptr);
  H.Remove(QStringLiteral("a"));  // the newest
  EXPECT_EQ(H.ValueOf(QStringLiteral("a")), 2);
  EXPECT_EQ(H.Count(), 1u);
  EXPECT_FALSE(H.Modify(QStringLiteral("b"), 1));
  H.Remove(QStringLiteral("missing"));
  EXPECT_EQ(H.Count(), 1u);
}

TEST(TStrKeyHash, NodeArrayWalksBucketsThenChains) {
  TStrKeyHash H(10, true);
  for (int I = 0; I < 30; ++I) H.Add(QString::number(I % 7), I);
  const auto Nodes = H.GetNodeArray();
  ASSERT_EQ(Nodes.size(), 30u);
  quint32 LastBucket = 0;
  for (const auto* N : Nodes) {
    const quint32 B = TStrKeyHash::StrHash(N->Key, false) % H.BucketCount();
    EXPECT_GE(B, LastBucket);
    LastBucket = B;
  }
  std::set<qintptr> Seen;
  auto E = H.GetEnumerator();
  while (E.MoveNext()) Seen.insert(E.GetCurrent()->Value);
  EXPECT_EQ(Seen.size(), 30u);
}

TEST(TStrKeyHash, ClearRebuildsAtTheDefaultCount) {
  TStrKeyHash H(4, false);
  for (int I = 0; I < 40; ++I) H.Add(QString::number(I), I);
  EXPECT_GT(H.BucketCount(), 5u);
  H.Clear();
  EXPECT_EQ(H.BucketCount(), 5u);
  EXPECT_EQ(H.Count(), 0u);
  EXPECT_EQ(H.FindNode(QStringLiteral("1")), nullptr);
  H.Add(QStringLiteral("1"), 7);
  EXPECT_EQ(H.ValueOf(QStringLiteral("1")), 7);
}

TEST(TIntKeyHash, HashFoldsTheHighHalf) {
  EXPECT_EQ(TIntKeyHash::IntHash(qintptr(0x0000000100000002LL)), 3u);
  EXPECT_EQ(TIntKeyHash::IntHash(-1), 0u);
  TIntKeyHash H(10, false);
  const qintptr Keys[] = {0, -1, 1LL << 40, (1LL << 40) + 1, std::numeric_limits<qintptr>::min()};
  for (const qintptr K : Keys) H.Add(K, K ^ 5);
  for (const qintptr K : Keys) EXPECT_EQ(H.ValueOf(K), K ^ 5);
  EXPECT_THROW(H.Add(-1, 0), Exception);
  EXPECT_EQ(H.ValueOf(12345), 0);
}

TEST(TIntKeyStrHash, ValueIsAStringAndAbsentIsEmpty) {
  TIntKeyStrHash H(0, false);
  H.Add(7, QStringLiteral("七"));
  EXPECT_EQ(H.ValueOf(7), QStringLiteral("七"));
  EXPECT_EQ(H.ValueOf(8), QString());
  H.Remove(7, QStringLiteral("x"));
  EXPECT_EQ(H.Count(), 1u);
  H.Remove(7, QStringLiteral("七"));
  EXPECT_EQ(H.Count(), 0u);
}

namespace {
struct IThing {
  virtual ~IThing() = default;
  virtual int Id() const = 0;
};
struct TThing : IThing {
  explicit TThing(int AId, int* ACounter = nullptr) : FId(AId), FCounter(ACounter) {}
  ~TThing() override {
    if (FCounter) ++*FCounter;
  }
  int Id() const override { return FId; }
  int FId;
  int* FCounter;
};
}  // namespace

TEST(TStrKeyIntfHash, HoldsAReferenceUntilRemoved) {
  TStrKeyIntfHash<IThing> H;
  auto A = std::make_shared<TThing>(1);
  H.SetValue(QStringLiteral("a"), A);
  EXPECT_EQ(A.use_count(), 2);
  H.SetValue(QStringLiteral("A"), std::make_shared<TThing>(2));  // same key: replaced
  EXPECT_EQ(A.use_count(), 1);
  EXPECT_EQ(H.Count(), 1u);
  EXPECT_EQ(H.Find(QStringLiteral("a"))->Id(), 2);
  H.SetValue(QStringLiteral("b"), std::make_shared<TThing>(3));
  H.SetValue(QStringLiteral("c"), std::make_shared<TThing>(4));
  int Visited = 0;
  H.Iterate([&](const QString&, const std::shared_ptr<IThing>&) { return ++Visited < 2; });
  EXPECT_EQ(Visited, 2);
  EXPECT_EQ(H.GetInterfaceArray().size(), 3u);
  EXPECT_EQ(H.GetKeyArray().size(), 3);
  H.Remove(QStringLiteral("b"));
  EXPECT_EQ(H.Find(QStringLiteral("b")), nullptr);
  EXPECT_EQ(H.Count(), 2u);
}

TEST(TStrKeyObjHash, FreesOwnedObjectsOnly) {
  int Freed = 0;
  {
    TStrKeyObjHash<TThing> Owned(10, false, true);
    Owned.Add(QStringLiteral("x"), new TThing(1, &Freed));
    Owned.Add(QStringLiteral("y"), new TThing(2, &Freed));
    Owned.Remove(QStringLiteral("x"));
    EXPECT_EQ(Freed, 1);
    EXPECT_EQ(Owned.Find(QStringLiteral("y"))->Id(), 2);
  }
  EXPECT_EQ(Freed, 2);
  TThing Kept(3, &Freed);
  {
    TStrKeyObjHash<TThing> Shared(10, false, false);
    Shared.Add(QStringLiteral("k"), &Kept);
    Shared.Clear();
  }
  EXPECT_EQ(Freed, 2);
}
