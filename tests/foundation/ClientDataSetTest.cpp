#include "ClientDataSet.h"

#include <gtest/gtest.h>

namespace {

// A bars-like table: composite key (DrawSetID, BarID), a name and a blob.
TDataPacket BarsPacket() {
  TDataPacket P;
  P.AddField(QStringLiteral("DrawSetID"), TFieldType::ftInteger);
  P.AddField(QStringLiteral("BarID"), TFieldType::ftInteger);
  P.AddField(QStringLiteral("BarNum"), TFieldType::ftString);
  P.AddField(QStringLiteral("Len"), TFieldType::ftFloat);
  P.AddField(QStringLiteral("Data"), TFieldType::ftBlob);
  P.AddRow({2, 1, QStringLiteral("b"), 1.5, QByteArray("x")});
  P.AddRow({1, 1, QStringLiteral("a"), 2.0, QVariant()});
  P.AddRow({1, 0, QStringLiteral("c"), QVariant(), QVariant()});
  P.AddRow({3, 7, QStringLiteral("d"), 4.0, QVariant()});
  return P;
}

QStringList Names(TClientDataSet& DS) {
  QStringList R;
  for (DS.First(); !DS.Eof(); DS.Next())
    R << DS.FieldByName(QStringLiteral("BarNum")).AsString();
  return R;
}

void SetName(TClientDataSet& DS, const char* AName) {
  DS.Edit();
  DS.FieldByName(QStringLiteral("BarNum")).SetAsString(QString::fromUtf8(AName));
  DS.Post();
}

}  // namespace

TEST(TClientDataSet, DataInKeepsReadOrderAndIndexSortsTheView) {
  TClientDataSet DS;
  DS.SetData(BarsPacket());
  EXPECT_TRUE(DS.Active());
  EXPECT_EQ(DS.RecordCount(), 4);
  EXPECT_EQ(Names(DS), QStringList({"b", "a", "c", "d"}));
  DS.SetIndexFieldNames(QStringLiteral("DrawSetID;BarID"));
  EXPECT_EQ(Names(DS), QStringList({"c", "a", "b", "d"}));
  EXPECT_EQ(DS.ChangeCount(), 0);
  EXPECT_TRUE(DS.Delta().IsNull());
}

TEST(TClientDataSet, FindKeyOnCompositeAndPartialKeys) {
  TClientDataSet DS;
  DS.SetData(BarsPacket());
  DS.SetIndexFieldNames(QStringLiteral("DrawSetID;BarID"));
  const struct {
    QVector<QVariant> Key;
    bool Found;
    const char* Name;
  } Cases[] = {
      {{1, 1}, true, "a"},   {{1, 0}, true, "c"},  {{2, 1}, true, "b"}, {{2, 0}, false, ""},
      {{4, 0}, false, ""},   {{1}, true, "c"},     {{3}, true, "d"},    {{QStringLiteral("3"), 7}, true, "d"},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    DS.First();
    EXPECT_EQ(DS.FindKey(C.Key), C.Found);
    if (C.Found) {
      EXPECT_EQ(DS.FieldByName(QStringLiteral("BarNum")).AsString(), QString::fromUtf8(C.Name));
    }
  }
  EXPECT_THROW(DS.FindKey({1, 1, 1}), EDatabaseError);
  EXPECT_TRUE(DS.Locate(QStringLiteral("BarNum;DrawSetID"), {QStringLiteral("b"), 2}));
  EXPECT_EQ(DS.FieldByName(QStringLiteral("BarID")).AsInteger(), 1);
  EXPECT_FALSE(DS.Locate(QStringLiteral("BarNum"), {QStringLiteral("zz")}));
}

TEST(TClientDataSet, DeltaHoldsInsertsEditsWithOriginalsAndDeletes) {
  TClientDataSet DS;
  DS.SetData(BarsPacket());
  DS.SetIndexFieldNames(QStringLiteral("DrawSetID;BarID"));
  ASSERT_TRUE(DS.FindKey({1, 1}));
  SetName(DS, "a2");
  SetName(DS, "a3");  // a second edit keeps the first original
  ASSERT_TRUE(DS.FindKey({3, 7}));
  DS.Delete();
  DS.Append();
  DS.FieldByName(QStringLiteral("DrawSetID")).SetAsInteger(5);
  DS.FieldByName(QStringLiteral("BarID")).SetAsString(QStringLiteral(" 9 "));
  DS.FieldByName(QStringLiteral("BarNum")).SetAsString(QStringLiteral("new"));
  DS.Post();
  EXPECT_EQ(DS.FieldByName(QStringLiteral("BarNum")).AsString(), QStringLiteral("new"));
  // an inserted row deleted again leaves no trace
  DS.Append();
  DS.FieldByName(QStringLiteral("DrawSetID")).SetAsInteger(6);
  DS.Post();
  DS.Delete();

  EXPECT_EQ(DS.ChangeCount(), 3);
  const TDataPacket D = DS.Delta();
  ASSERT_EQ(D.Rows.size(), 3);
  int Seen = 0;
  for (const TPacketRow& R : D.Rows) {
    switch (R.Status) {
      case TUpdateStatus::usModified:
        EXPECT_EQ(R.Values[2].toString(), QStringLiteral("a3"));
        EXPECT_EQ(R.OldValues[2].toString(), QStringLiteral("a"));
        Seen |= 1;
        break;
      case TUpdateStatus::usDeleted:
        EXPECT_EQ(R.OldValues[2].toString(), QStringLiteral("d"));
        EXPECT_EQ(R.OldValues[1].toLongLong(), 7);
        Seen |= 2;
        break;
      case TUpdateStatus::usInserted:
        EXPECT_EQ(R.Values[1].toLongLong(), 9);
        EXPECT_TRUE(R.Values[3].isNull());
        Seen |= 4;
        break;
      default:
        ADD_FAILURE() << "unmodified row in a delta";
    }
  }
  EXPECT_EQ(Seen, 7);
  EXPECT_EQ(DS.RecordCount(), 4);
}

TEST(TClientDataSet, SavePointRollsBackOnlyWhatCameAfterIt) {
  TClientDataSet DS;
  DS.SetData(BarsPacket());
  DS.SetIndexFieldNames(QStringLiteral("DrawSetID;BarID"));
  ASSERT_TRUE(DS.FindKey({1, 0}));
  SetName(DS, "c1");
  const int Mark = DS.SavePoint();
  SetName(DS, "c2");
  ASSERT_TRUE(DS.FindKey({2, 1}));
  DS.Delete();
  DS.Append();
  DS.FieldByName(QStringLiteral("DrawSetID")).SetAsInteger(0);
  DS.FieldByName(QStringLiteral("BarNum")).SetAsString(QStringLiteral("z"));
  DS.Post();
  EXPECT_EQ(Names(DS), QStringList({"z", "c2", "a", "d"}));

  DS.SetSavePoint(Mark);
  EXPECT_EQ(Names(DS), QStringList({"c1", "a", "b", "d"}));
  EXPECT_EQ(DS.ChangeCount(), 1);
  DS.SetSavePoint(0);
  EXPECT_EQ(Names(DS), QStringList({"c", "a", "b", "d"}));
  EXPECT_EQ(DS.ChangeCount(), 0);
  EXPECT_THROW(DS.SetSavePoint(5), EDatabaseError);
}

TEST(TClientDataSet, TheCurrentSavePointIsANoOp) {
  TClientDataSet DS;
  DS.SetData(BarsPacket());
  DS.SetIndexFieldNames(QStringLiteral("DrawSetID;BarID"));
  ASSERT_TRUE(DS.FindKey({1, 0}));
  SetName(DS, "c1");
  ASSERT_TRUE(DS.FindKey({2, 1}));
  const QString Current = DS.FieldByName(QStringLiteral("BarNum")).AsString();
  EXPECT_NO_THROW(DS.SetSavePoint(DS.SavePoint()));
  EXPECT_EQ(DS.ChangeCount(), 1);
  EXPECT_EQ(DS.SavePoint(), 1);
  EXPECT_EQ(DS.FieldByName(QStringLiteral("BarNum")).AsString(), Current);  // the cursor stays
  EXPECT_EQ(Names(DS), QStringList({"c1", "a", "b", "d"}));
  TClientDataSet Fresh;
  Fresh.SetData(BarsPacket());
  EXPECT_NO_THROW(Fresh.SetSavePoint(Fresh.SavePoint()));
  EXPECT_EQ(Fresh.ChangeCount(), 0);
}

TEST(TClientDataSet, MergeMakesTheCurrentStateTheReadState) {
  TClientDataSet DS;
  DS.SetData(BarsPacket());
  DS.First();
  SetName(DS, "b1");
  DS.Last();
  DS.Delete();
  DS.MergeChangeLog();
  EXPECT_EQ(DS.ChangeCount(), 0);
  EXPECT_EQ(DS.SavePoint(), 0);
  EXPECT_TRUE(DS.Delta().IsNull());
  EXPECT_EQ(Names(DS), QStringList({"b1", "a", "c"}));
  DS.First();
  SetName(DS, "b2");  // after the merge, the merged value is the old value of a new edit
  EXPECT_EQ(DS.Delta().Rows.at(0).OldValues[2].toString(), QStringLiteral("b1"));
  const TDataPacket Out = DS.Data();
  EXPECT_EQ(Out.Rows.size(), 3);
}

TEST(TClientDataSet, FiltersOfTheSystemsForms) {
  TClientDataSet DS;
  DS.SetData(BarsPacket());
  const struct {
    const char* Filter;
    QStringList Names;
  } Cases[] = {
      {"(DrawSetID = 1)", {"a", "c"}},
      {"BarID > 0 and DrawSetID = 2", {"b"}},
      {"barid > 0 AND drawsetid <> 2", {"a", "d"}},
      {"DrawSetID = 3 or (BarNum = 'c')", {"c", "d"}},
      {"not (DrawSetID >= 2)", {"a", "c"}},
      {"Len is null", {"c"}},
      {"Len <= 2", {"b", "a"}},
      {"BarNum = 'it''s'", {}},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Filter);
    DS.SetFilter(QString::fromUtf8(C.Filter));
    DS.SetFiltered(true);
    EXPECT_EQ(Names(DS), C.Names);
    DS.SetFiltered(false);
  }
  EXPECT_EQ(Names(DS), QStringList({"b", "a", "c", "d"}));
  for (const char* Bad : {"Nope = 1", "DrawSetID = ", "(DrawSetID = 1", "DrawSetID ! 1", "'x"})
    EXPECT_THROW(DS.SetFilter(QString::fromUtf8(Bad)), EDatabaseError) << Bad;
  // a row edited out of the filter leaves the view
  DS.SetFilter(QStringLiteral("DrawSetID = 1"));
  DS.SetFiltered(true);
  DS.Edit();
  DS.FieldByName(QStringLiteral("DrawSetID")).SetAsInteger(9);
  DS.Post();
  EXPECT_EQ(Names(DS), QStringList({"c"}));
}

TEST(TClientDataSet, BadUseGivesPlainErrors) {
  TClientDataSet DS;
  EXPECT_THROW(DS.Open(), EDatabaseError);
  DS.SetData(BarsPacket());
  EXPECT_THROW(DS.FieldByName(QStringLiteral("Missing")), EDatabaseError);
  EXPECT_THROW(DS.FieldByName(QStringLiteral("BarID")).SetAsInteger(1), EDatabaseError);
  DS.Edit();
  EXPECT_THROW(DS.FieldByName(QStringLiteral("BarID")).SetAsString(QStringLiteral("1x")), EConvertError);
  DS.Cancel();
  EXPECT_EQ(DS.ChangeCount(), 0);
  DS.Close();
  EXPECT_THROW(DS.First(), EDatabaseError);
  EXPECT_EQ(DS.RecordCount(), 0);
}

TEST(TClientDataSet, FieldTextAndTypedAccess) {
  TClientDataSet DS;
  DS.SetData(BarsPacket());
  DS.First();
  EXPECT_EQ(DS.FieldByName(QStringLiteral("Len")).AsString(), QStringLiteral("1.5"));
  EXPECT_EQ(DS.FieldByName(QStringLiteral("Data")).AsBytes(), QByteArray("x"));
  DS.Edit();
  DS.FieldByName(QStringLiteral("Len")).SetAsString(QStringLiteral("2.25"));
  DS.FieldByName(QStringLiteral("BarNum")).SetAsString(QStringLiteral("12"));
  DS.FieldByName(QStringLiteral("Data")).SetAsBytes(QByteArray("\0\1", 2));
  DS.Post();
  EXPECT_DOUBLE_EQ(DS.FieldByName(QStringLiteral("Len")).AsFloat(), 2.25);
  EXPECT_EQ(DS.FieldByName(QStringLiteral("BarNum")).AsInteger(), 12);
  EXPECT_EQ(DS.FieldByName(QStringLiteral("Data")).AsBytes().size(), 2);
  DS.Next();
  EXPECT_TRUE(DS.FieldByName(QStringLiteral("Data")).IsNull());
}

TEST(TClientDataSet, EditingAKeyFieldReordersTheView) {
  TClientDataSet DS;
  DS.SetData(BarsPacket());
  DS.SetIndexFieldNames(QStringLiteral("DrawSetID;BarID"));
  ASSERT_TRUE(DS.FindKey({1, 0}));  // "c", first in key order
  DS.Edit();
  DS.FieldByName(QStringLiteral("DrawSetID")).SetAsInteger(9);
  DS.Post();
  EXPECT_EQ(DS.FieldByName(QStringLiteral("BarNum")).AsString(), QStringLiteral("c"));  // still current
  EXPECT_EQ(DS.RecNo(), 4);
  EXPECT_EQ(Names(DS), QStringList({"a", "b", "d", "c"}));
  EXPECT_TRUE(DS.FindKey({9, 0}));
  EXPECT_FALSE(DS.FindKey({1, 0}));
  SetName(DS, "c2");  // a non-key edit keeps the order
  EXPECT_EQ(Names(DS), QStringList({"a", "b", "d", "c2"}));
}
