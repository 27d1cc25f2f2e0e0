#include "DemoLibrary.h"
#include "Dialogs.h"
#include "DrawSet.h"
#include "DrawSetConsts.h"
#include "DrawSetLibrary.h"
#include "Interpreter.h"
#include "LibraryBackends.h"
#include "SqliteDb.h"
#include "MZTBarInfo.h"
#include "MZTBarInfoConst.h"
#include "VDILine.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QFile>
#include <QProcess>
#include <QThread>
#include <QTemporaryDir>

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

namespace {

QString S(const char* AText) { return QString::fromUtf8(AText); }

// One editing client: the three datasets of one draw set, loaded as the editor does.
struct TClient {
  TClientDataSet SetDS, BarDS, ParamDS;
  std::unique_ptr<TDrawSet> DS;
  std::shared_ptr<TDrawSetLibrary> Lib;

  TClient(const QString& AFile, int AID) : Lib(TDrawSetLibrary::Open(AFile)) {
    SetDS.SetData(DataSvr::GetDrawSets(*Lib));
    BarDS.SetData(DataSvr::GetDrawSetBars(*Lib, AID));
    ParamDS.SetData(DataSvr::GetDrawSetParams(*Lib, AID, CalcRuleID));
    SetDS.SetFilter(S("(DrawSetID = %1)").arg(AID));
    SetDS.SetFiltered(true);
    SetDS.First();
    DS = std::make_unique<TDrawSet>(nullptr, AID, SetDS.FieldByName(S("DrawSetName")).AsString(),
                                    int(SetDS.FieldByName(S("DrawSetTypeID")).AsInteger()), &SetDS, &BarDS,
                                    &ParamDS);
  }
  bool Save(QStringList* ABoxes = nullptr) {
    TDialogScope Boxes;
    const bool Ok = ApplyChanges(*Lib, SetDS, BarDS, ParamDS, CalcRuleID);
    if (ABoxes)
      *ABoxes = Boxes->Lines();
    return Ok;
  }
};

QString Dump(const QString& ALocation) { return DumpLibrary(ALocation); }

class DrawSetLibraryTest : public testing::TestWithParam<TBackend> {
protected:
  void SetUp() override {
    SetRegionSettings(1);
    ASSERT_TRUE(Dir.isValid());
    if (GetParam() == TBackend::Postgres)
      DSE_REQUIRE_POSTGRES();
    File = NewLibraryLocation(GetParam(), Dir);
    ASSERT_FALSE(File.isEmpty());
    CreateDemoLibrary(File, false);
  }
  QTemporaryDir Dir;
  QString File;  // a file name or a server URI
};

class DrawSetLibraryFileTest : public testing::Test {
protected:
  void SetUp() override {
    SetRegionSettings(1);
    ASSERT_TRUE(Dir.isValid());
    File = Dir.filePath(S("lib.db"));
    CreateDemoLibrary(File, false);
  }
  QTemporaryDir Dir;
  QString File;
};

}  // namespace

TEST_P(DrawSetLibraryTest, SaveAndReloadThroughTheModel) {
  {
    TClient A(File, 2);
    TDrawSetBar* Bar = A.DS->Bars().GetItems(0);
    Bar->SetBarNum(S("负筋"));
    Bar->SetCalcProgram(S("cd=1\nmainend"));
    A.DS->Bars().Add(2, A.DS->Bars().GetMaxBarID(2) + 1, 1, S("新钢筋"), S("3,4"), -1, S(""), S(""), true);
    TDrawSetParam* P = A.DS->Params().GetItems(0);
    P->SetParamVal(S("150"));
    A.DS->Params().DeleteByID(2, 3, true);
    A.DS->SetName(S("板边支座（改）"));
    TBytesStream Blob(QByteArray("<?xml version=\"1.0\"?><x/>"));
    A.DS->SetVectorDrawing(Blob);
    ASSERT_TRUE(A.Save());
    EXPECT_FALSE(A.DS->Modified());
  }
  TClient B(File, 2);
  EXPECT_EQ(B.DS->Name(), S("板边支座（改）"));
  ASSERT_EQ(B.DS->Bars().Count(), 4);
  EXPECT_EQ(B.DS->Bars().GetItems(0)->BarNum(), S("负筋"));
  EXPECT_EQ(B.DS->Bars().GetItems(0)->CalcProgram(), S("cd=1\nmainend"));
  EXPECT_EQ(B.DS->Bars().GetItems(3)->BarVDID(), S("3,4"));
  EXPECT_EQ(B.DS->Params().Count(), 3);
  EXPECT_EQ(B.DS->Params().GetItems(0)->ParamVal(), S("150"));  // written as SetParamVal, read back as ParamVal
  TBytesStream Out;
  B.DS->GetVectorDrawing(Out);
  EXPECT_EQ(Out.Bytes(), QByteArray("<?xml version=\"1.0\"?><x/>"));
  // the other regions' columns were not touched
  EXPECT_NE(TDrawSetLibrary::Open(File)->Db().Scalar(S("SELECT CalcProgram_Bs FROM DrawSetBars WHERE DrawSetID = 2 AND BarID = 0")).toString(),
            S("cd=1\nmainend"));
}

TEST_P(DrawSetLibraryTest, ConflictingSavesAreRefusedWithNothingWritten) {
  TClient A(File, 0), B(File, 0);
  A.DS->Bars().GetItems(0)->SetBarRemark(S("A 改"));
  ASSERT_TRUE(A.Save());
  const QString Before = Dump(File);

  // B edits the same bar and a param; the bar's row changed since B read it
  B.DS->Params().GetItems(0)->SetUnit(S("cm"));
  B.DS->Bars().GetItems(0)->SetBarNum(S("B 改"));
  QStringList Boxes;
  EXPECT_FALSE(B.Save(&Boxes));
  ASSERT_EQ(Boxes.size(), 1);
  EXPECT_TRUE(Boxes[0].startsWith(S("[错误] 保存失败：图集 0 的钢筋 0已被其他用户修改"))) << Boxes[0].toStdString();
  EXPECT_EQ(Dump(File), Before);
  EXPECT_EQ(B.BarDS.ChangeCount(), 1);  // the logs stay for another try
  EXPECT_EQ(B.ParamDS.ChangeCount(), 1);

  const struct {
    const char* Name;
    std::function<void(TClient&)> First, Second;
    const char* Message;
  } Cases[] = {
      {"edit of a deleted row", [](TClient& C) { C.DS->Bars().DeleteByID(0, 1, true); },
       [](TClient& C) { C.DS->Bars().GetItems(1)->SetBarPicID(2); }, "图集 0 的钢筋 1已被其他用户删除"},
      {"delete of an edited row", [](TClient& C) { C.DS->Params().GetItems(2)->SetUnit(S("m")); },
       [](TClient& C) { C.DS->Params().DeleteByID(0, 2, true); }, "图集 0 的变量 2已被其他用户修改"},
      {"two inserts of one key",
       [](TClient& C) { C.DS->Bars().Add(0, 9, 1, S("x"), S(""), -1, S(""), S(""), true); },
       [](TClient& C) { C.DS->Bars().Add(0, 9, 1, S("y"), S(""), -1, S(""), S(""), true); },
       "图集 0 的钢筋 9已被其他用户添加"},
      {"draw-set row", [](TClient& C) { C.DS->SetName(S("甲")); }, [](TClient& C) { C.DS->SetTypeID(2); },
       "图集 0已被其他用户修改"},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    TClient First(File, 0), Second(File, 0);
    C.First(First);
    ASSERT_TRUE(First.Save());
    const QString Saved = Dump(File);
    C.Second(Second);
    EXPECT_FALSE(Second.Save(&Boxes));
    ASSERT_EQ(Boxes.size(), 1);
    EXPECT_TRUE(Boxes[0].contains(S(C.Message))) << Boxes[0].toStdString();
    EXPECT_EQ(Dump(File), Saved);
  }
}

TEST_P(DrawSetLibraryTest, AFailingStatementLeavesTheFileUnchanged) {
  TClient A(File, 3);
  const QString Before = Dump(File);
  A.DS->Bars().GetItems(0)->SetBarNum(S("先改的"));
  A.DS->Params().GetItems(0)->SetParamVal(S("3000"));
  A.DS->Bars().Add(3, 7, 1, QString(41, u'长'), S(""), -1, S(""), S(""), true);  // breaks the name check
  QStringList Boxes;
  EXPECT_FALSE(A.Save(&Boxes));
  ASSERT_EQ(Boxes.size(), 1);
  EXPECT_TRUE(Boxes[0].startsWith(S("[错误] 保存失败，本次保存没有写入任何数据："))) << Boxes[0].toStdString();
  EXPECT_EQ(Dump(File), Before);
  // fixing the row lets the same log through
  A.DS->Bars().GetItems(A.DS->Bars().Count() - 1)->SetBarNum(S("短名"));
  EXPECT_TRUE(A.Save());
  TClient B(File, 3);
  EXPECT_EQ(B.DS->Bars().GetItems(0)->BarNum(), S("先改的"));
  EXPECT_EQ(B.DS->Params().GetItems(0)->ParamVal(), S("3000"));
}

TEST_P(DrawSetLibraryTest, DeletingADrawSetTakesItsRowsAlong) {
  TClientDataSet SetDS, BarDS, ParamDS;
  auto Lib = TDrawSetLibrary::Open(File);
  SetDS.SetData(DataSvr::GetDrawSets(*Lib));
  TDrawSets Sets(&SetDS, &BarDS, &ParamDS);
  Sets.DeleteByID(4, true);
  ASSERT_TRUE(ApplyChanges(*Lib, SetDS, BarDS, ParamDS, CalcRuleID));
  EXPECT_EQ(DataSvr::GetDrawSets(*Lib).Rows.size(), 5);
  EXPECT_TRUE(DataSvr::GetDrawSetBars(*Lib, 4).Rows.isEmpty());
  EXPECT_TRUE(DataSvr::GetDrawSetParams(*Lib, 4, 8).Rows.isEmpty());
  EXPECT_FALSE(DataSvr::GetDrawSetBars(*Lib, 4).IsNull());  // typed even when empty
}

TEST_F(DrawSetLibraryFileTest, OpenRefusesWhatIsNotALibrary) {
  const QString Junk = Dir.filePath(S("junk.db"));
  QFile F(Junk);
  ASSERT_TRUE(F.open(QIODevice::WriteOnly));
  F.write(QByteArray(4096, 'x'));
  F.close();
  const QString Other = Dir.filePath(S("other.db"));
  TSqliteDb(Other, true).Exec(S("CREATE TABLE t (a)"));
  const struct {
    QString File;
    const char* Message;
  } Cases[] = {{Dir.filePath(S("none.db")), "图集库文件不存在"}, {Junk, "不是图集库文件"}, {Other, "不是图集库文件"}};
  for (const auto& C : Cases) {
    try {
      TDrawSetLibrary::Open(C.File);
      ADD_FAILURE() << C.Message;
    } catch (const EDatabaseError& E) {
      EXPECT_TRUE(E.Message().startsWith(S(C.Message))) << E.Message().toStdString();
    }
  }
  EXPECT_THROW(CreateDemoLibrary(File, false), Exception);
  EXPECT_THROW(CreateDemoLibrary(Dir.filePath(S("no/such/dir.db")), false), Exception);
  EXPECT_FALSE(QFile::exists(File + S(".init-tmp")));
}

TEST_P(DrawSetLibraryTest, DemoCatalogueCoversTheChooserPages) {
  auto Lib = TDrawSetLibrary::Open(File);
  const TDataPacket Pics = DataSvr::GetBarPics(*Lib);
  EXPECT_GE(Pics.Rows.size(), 30);
  QSet<int> Ids, CustomTypes;
  for (int R = 0; R < Pics.Rows.size(); ++R) {
    const int ID = Pics.Value(R, S("BarPicID")).toInt();
    Ids << ID;
    TVectorDrawing D;
    TBytesStream Blob(Pics.Value(R, S("VectorDrawing")).toByteArray());
    ASSERT_TRUE(D.LoadFromStream(Blob)) << ID;
    // every picture param names a text item of the picture
    for (const TPacketRow& P : DataSvr::GetBarPicParams(*Lib, ID).Rows)
      EXPECT_NE(D.IndexOfID(P.Values[5].toInt()), -1) << ID;
    if (ID > 10000)
      CustomTypes << Pics.Value(R, S("BarPicTypeID")).toInt();
  }
  for (int ID : {1, 601, 946, 536, 64, 132, 544, 833, 523, 705, 486, 947, 949, 903, 944, 945, 948, 356})
    EXPECT_TRUE(Ids.contains(ID)) << ID;
  EXPECT_EQ(CustomTypes.size(), DataSvr::GetCustomBarPicTypes(*Lib).Rows.size());
  EXPECT_EQ(DataSvr::GetMaxBarPicID(*Lib), 10004);
  EXPECT_EQ(DataSvr::GetBendTypes(*Lib).Rows.size(), 5);
  EXPECT_EQ(DataSvr::GetHookTypes(*Lib).Rows.size(), 3);
  EXPECT_FALSE(DataSvr::GetBarClasses(*Lib).Rows.isEmpty());
  EXPECT_FALSE(Lib->CommonBarPics().isEmpty());
  EXPECT_TRUE(Lib->DiamDictJson(S("metric")).contains("\"diameter\""));
}

// Each demo draw set must hold together: items exist, notations parse, param texts
// show their values, and every script runs as the debugger would run it.
TEST_P(DrawSetLibraryTest, DemoDrawSetsAreConsistentAndTheirScriptsRun) {
  SetBarStandardCode(1);
  auto Lib = TDrawSetLibrary::Open(File);
  const TDataPacket Sets = DataSvr::GetDrawSets(*Lib);
  ASSERT_EQ(Sets.Rows.size(), 6);
  for (int R = 0; R < Sets.Rows.size(); ++R) {
    const int ID = Sets.Value(R, S("DrawSetID")).toInt();
    SCOPED_TRACE(ID);
    TClient C(File, ID);
    TVectorDrawing D;
    TBytesStream Blob;
    C.DS->GetVectorDrawing(Blob);
    Blob.SetPosition(0);
    ASSERT_TRUE(D.LoadFromStream(Blob));
    ASSERT_GT(C.DS->Bars().Count(), 0);
    ASSERT_GT(C.DS->Params().Count(), 0);
    QStringList ParamCodes;
    for (int I = 0; I < C.DS->Params().Count(); ++I) {
      TDrawSetParam* P = C.DS->Params().GetItems(I);
      const auto* T = dynamic_cast<TVectorText*>(D.Items(D.IndexOfID(P->ParamVDID())));
      ASSERT_NE(T, nullptr) << P->ParamCode().toStdString();
      EXPECT_EQ(T->Text(), P->ParamVal());
      ParamCodes << P->ParamCode();
      QString Err;
      EXPECT_TRUE(C.DS->Params().IsValidParamCode(P->ParamCode(), Err, P->ParamID())) << Err.toStdString();
    }
    for (int I = 0; I < C.DS->Bars().Count(); ++I) {
      TDrawSetBar* B = C.DS->Bars().GetItems(I);
      SCOPED_TRACE(B->BarNum().toStdString());
      for (int K = 0; K < B->VDIDCount(); ++K)
        EXPECT_NE(D.IndexOfID(B->GetVDIDByIndex(K)), -1);
      QString Info = B->BarInfo();
      if (B->BarInfoVDID() >= 0) {
        const auto* T = dynamic_cast<TVectorText*>(D.Items(D.IndexOfID(B->BarInfoVDID())));
        ASSERT_NE(T, nullptr);
        Info = T->Text();
      }
      TDrawSetBarInfo Parsed;
      Parsed.SetAsString(Info);
      ASSERT_FALSE(Parsed.IsNull());
      const double Spacing = Parsed.Space2() > 0 ? Parsed.Space2() : Parsed.Space1();

      TInterpreter Run;
      for (int P = 0; P < C.DS->Params().Count(); ++P)
        Run.AddGlobalVar(C.DS->Params().GetItems(P)->ParamCode().toLower(), C.DS->Params().GetItems(P)->ParamVal());
      const QVector<QPair<QString, QString>> Fixed = {
          {S("gjth"), QString::number(B->BarPicID())}, {S("dj"), S("0")},   {S("cd"), S("0")},
          {S("ishoop"), S("0")},  {S("gjlx"), S("1")}, {S("djlx"), S("1")}, {S("cnt"), S("0")},
          {S("jb"), S("1")},      {S("zj"), FloatToStr(Parsed.Diameter())},
          {S("jj"), QString::number(Spacing > 0 ? Spacing : 0)},        {S("jm"), S("0")}};
      for (const auto& [Name, Value] : Fixed)
        Run.AddGlobalVar(Name, Value);
      for (const TPacketRow& P : DataSvr::GetBarPicParams(*Lib, B->BarPicID()).Rows)
        Run.AddGlobalVar(P.Values[1].toString().toLower(), S("0"));
      TDialogScope Boxes;
      Run.SetProgramme(B->CalcProgram());
      try {
        EXPECT_TRUE(Run.Execute()) << Boxes->Lines().join(u'\n').toStdString();
      } catch (const Exception& E) {
        ADD_FAILURE() << E.Message().toStdString();
      }
      EXPECT_GT(StrToFloat(Run.GetVarValue(S("cd"))), 0);
      EXPECT_GT(StrToFloat(Run.GetVarValue(S("cnt"))), 0);
    }
  }
}

TEST_P(DrawSetLibraryTest, EveryRegionSeesTheDemo) {
  for (int Region : {0, 2, 4, 6, 7, 8, 9, 10, 13, 20}) {
    SCOPED_TRACE(Region);
    SetRegionSettings(Region);
    TClient C(File, 0);
    EXPECT_EQ(C.DS->Params().Count(), 5);
    EXPECT_FALSE(C.DS->Bars().GetItems(0)->CalcProgram().isEmpty());
    TBytesStream Blob;
    C.DS->GetVectorDrawing(Blob);
    EXPECT_GT(Blob.GetSize(), 0);
  }
  SetRegionSettings(1);
}

// A save killed at any moment leaves the file as before or as after, never between.
TEST_P(DrawSetLibraryTest, AKilledSaveLeavesTheFileBeforeOrAfter) {
  TVectorDrawing Big;
  for (int I = 0; I < 30000; ++I)
    Big.Add(std::unique_ptr<TVectorDrawingItem>(new TVectorLine(&Big, 0, 0xFFFFFF, 1, psSolid, 0, 0, msNone, msNone, {double(I), 0}, {double(I), 100})));
  const QString Lvd = Dir.filePath(S("big.lvd"));
  ASSERT_TRUE(Big.SaveToFile(Lvd, sfBin));
  const QString Before = Dump(File);
  const QStringList Args = {S("import"), File, Lvd, S("--name"), S("大图")};
  QString After;
  {
    const QString Copy = CloneLibrary(File, Dir);
    QProcess P;
    P.start(S(DSE_BINARY), QStringList(Args).replaceInStrings(File, Copy));
    ASSERT_TRUE(P.waitForFinished(60000));
    ASSERT_EQ(P.exitCode(), 0) << P.readAllStandardError().toStdString();
    After = Dump(Copy);
  }
  ASSERT_NE(After, Before);
  int KilledBefore = 0;
  for (int Delay : {20, 60, 100, 140, 180, 220, 260, 300, 400, 600}) {
    SCOPED_TRACE(Delay);
    QProcess P;
    P.start(S(DSE_BINARY), Args);
    ASSERT_TRUE(P.waitForStarted());
    QThread::msleep(Delay);
    P.kill();
    P.waitForFinished();
    const QString Now = Dump(File);  // opening rolls back a hot journal; a server rolls back itself
    ASSERT_TRUE(Now == Before || Now == After);
    if (Now == After)
      break;  // a second import would be a different change
    ++KilledBefore;
  }
  RecordProperty("killed_before_commit", KilledBefore);
}

// The value is written as "SetParamVal" while "ParamVal" keeps what was read: a
// second save in the same run must not take the first for someone else's change.
TEST_P(DrawSetLibraryTest, SavingAParamValueTwiceInOneRun) {
  TClient A(File, 1);
  TDrawSetParam* P = A.DS->Params().GetItems(0);
  P->SetParamVal(S("600"));
  ASSERT_TRUE(A.Save());
  P->SetParamVal(S("650"));
  P->SetUnit(S("cm"));
  QStringList Boxes;
  ASSERT_TRUE(A.Save(&Boxes)) << Boxes.join(u'\n').toStdString();
  TClient B(File, 1);
  EXPECT_EQ(B.DS->Params().GetItems(0)->ParamVal(), S("650"));
  EXPECT_EQ(B.DS->Params().GetItems(0)->Unit(), S("cm"));
  // someone else's change of the value is still caught
  TClient C(File, 1);
  B.DS->Params().GetItems(0)->SetParamVal(S("700"));
  ASSERT_TRUE(B.Save());
  C.DS->Params().GetItems(0)->SetUnit(S("m"));
  EXPECT_FALSE(C.Save(&Boxes));
}

INSTANTIATE_TEST_SUITE_P(Backends, DrawSetLibraryTest, DSE_BACKENDS);

// Eight editors save at once, each its own draw set; four of them also change one
// shared draw set they all read before anyone saved.
TEST_P(DrawSetLibraryTest, EightConcurrentSavers) {
  {
    // three more draw sets: eight private ones and a shared one
    auto Lib = TDrawSetLibrary::Open(File);
    TClientDataSet SetDS, BarDS, ParamDS;
    SetDS.SetData(DataSvr::GetDrawSets(*Lib));
    TDrawSets Sets(&SetDS, &BarDS, &ParamDS);
    for (int I = 0; I < 3; ++I)
      Sets.Add(Sets.MaxID() + 1, S("附加%1").arg(I), 1, true);
    ASSERT_TRUE(ApplyChanges(*Lib, SetDS, BarDS, ParamDS, CalcRuleID));
  }
  const int SharedID = 0;
  const QString Before = Dump(File);
  std::vector<std::unique_ptr<QProcess>> Runs;
  for (int I = 0; I < 8; ++I) {
    Runs.push_back(std::make_unique<QProcess>());
    Runs.back()->start(S(DSE_RACE_HELPER), {File, QString::number(I + 1), QString::number(I < 4 ? SharedID : -1),
                                            QString::number(I)});
  }
  for (auto& P : Runs) {
    ASSERT_TRUE(P->waitForReadyRead(30000));
    ASSERT_EQ(P->readLine().trimmed(), QByteArray("ready"));
  }
  for (auto& P : Runs)
    P->write("go\n");
  int SharedWinner = -1, Refused = 0;
  for (int I = 0; I < 8; ++I) {
    QProcess& P = *Runs[I];
    ASSERT_TRUE(P.waitForFinished(60000));
    const QStringList Lines = QString::fromUtf8(P.readAllStandardOutput()).trimmed().split(u'\n');
    SCOPED_TRACE(Lines.join(S(" / ")).toStdString());
    ASSERT_EQ(Lines.size(), I < 4 ? 2 : 1);
    EXPECT_EQ(Lines[0], S("own ok"));
    if (I < 4) {
      if (Lines[1] == S("shared ok")) {
        EXPECT_EQ(SharedWinner, -1) << "two conflicting saves both landed";
        SharedWinner = I;
      } else {
        ++Refused;
        EXPECT_TRUE(Lines[1].startsWith(S("shared refused 保存失败：")) &&
                    (Lines[1].contains(S("已被其他用户修改")) || Lines[1].contains(S("同时修改"))));
      }
    }
  }
  EXPECT_NE(SharedWinner, -1);
  EXPECT_EQ(Refused, 3);
  auto Lib = TDrawSetLibrary::Open(File);
  const TDataPacket Sets = DataSvr::GetDrawSets(*Lib);
  for (int I = 0; I < 8; ++I) {
    bool Found = false;
    for (int R = 0; R < Sets.Rows.size(); ++R)
      if (Sets.Value(R, S("DrawSetID")).toInt() == I + 1)
        Found = Sets.Value(R, S("DrawSetName")).toString() == S("私有-%1").arg(I);
    EXPECT_TRUE(Found) << "the private save of " << I << " is missing";
  }
  TClient Shared(File, SharedID);
  EXPECT_EQ(Shared.DS->Name(), S("共享-%1").arg(SharedWinner));
  EXPECT_EQ(Shared.DS->Params().GetItems(0)->Unit(), QString::number(SharedWinner));  // the whole winning save
  // nothing else changed, and no row lost its draw set
  QString After = Dump(File), Expected = Before;
  EXPECT_EQ(After.count(u'\n'), Expected.count(u'\n'));
  EXPECT_TRUE(Lib->Db().Scalar(S("SELECT COUNT(*) FROM DrawSetBars WHERE DrawSetID NOT IN (SELECT DrawSetID FROM DrawSets)"))
                  .toInt() == 0);
  if (GetParam() == TBackend::Sqlite) {
    EXPECT_EQ(Lib->Db().Scalar(S("PRAGMA integrity_check")).toString(), S("ok"));
  }
}

// A save that has checked its rows but not yet committed makes a second save of the
// same rows wait, and the second then sees the first's values and is refused.
TEST_P(DrawSetLibraryTest, ASaveWaitsForAnOpenOneAndIsRefused) {
  TClient A(File, 0), B(File, 0);
  A.DS->Bars().GetItems(0)->SetBarRemark(S("A 改"));
  B.DS->Bars().GetItems(0)->SetBarRemark(S("B 改"));
  A.Lib->Db().Begin();  // A's save runs inside it and is not yet committed
  ASSERT_TRUE(A.Save());
  std::atomic<bool> Done{false};
  bool Saved = true;
  QString Refusal;
  std::thread Second([&] {
    Saved = DataSvr::SaveDrawSets(*B.Lib, {TDataPacket(), B.SetDS.Delta(), B.BarDS.Delta(), B.ParamDS.Delta()},
                                  CalcRuleID, Refusal);
    Done = true;
  });
  QThread::msleep(400);
  EXPECT_FALSE(Done) << "the second save did not wait";
  A.Lib->Db().Commit();
  Second.join();
  EXPECT_FALSE(Saved);
  EXPECT_TRUE(Refusal.contains(S("图集 0 的钢筋 0已被其他用户修改"))) << Refusal.toStdString();
  TClient C(File, 0);
  EXPECT_EQ(C.DS->Bars().GetItems(0)->BarRemark(), S("A 改"));
}
