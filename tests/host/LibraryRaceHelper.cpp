// One editor's save for the concurrency test: loads its own draw set (and the shared
// one), changes them, says "ready", waits for a line on stdin, then saves each and
// prints what the server answered.
//   library_race_helper LIBRARY OWN_ID SHARED_ID|-1 TAG

#include "DrawSet.h"
#include "DrawSetConsts.h"
#include "DrawSetLibrary.h"

#include <cstdio>
#include <iostream>
#include <string>

namespace {

struct TEdit {
  TClientDataSet SetDS, BarDS, ParamDS;
  std::unique_ptr<TDrawSet> DS;

  TEdit(TDrawSetLibrary& ALib, int AID) {
    SetDS.SetData(DataSvr::GetDrawSets(ALib));
    BarDS.SetData(DataSvr::GetDrawSetBars(ALib, AID));
    ParamDS.SetData(DataSvr::GetDrawSetParams(ALib, AID, CalcRuleID));
    SetDS.SetFilter(QStringLiteral("(DrawSetID = %1)").arg(AID));
    SetDS.SetFiltered(true);
    SetDS.First();
    DS = std::make_unique<TDrawSet>(nullptr, AID, SetDS.FieldByName(QStringLiteral("DrawSetName")).AsString(),
                                    int(SetDS.FieldByName(QStringLiteral("DrawSetTypeID")).AsInteger()), &SetDS,
                                    &BarDS, &ParamDS);
  }
  QString Save(TDrawSetLibrary& ALib) {
    QString Refusal;
    if (DataSvr::SaveDrawSets(ALib, {TDataPacket(), SetDS.Delta(), BarDS.Delta(), ParamDS.Delta()}, CalcRuleID, Refusal))
      return QStringLiteral("ok");
    return QStringLiteral("refused ") + Refusal;
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: library_race_helper LIBRARY OWN_ID SHARED_ID|-1 TAG\n");
    return 2;
  }
  try {
    SetRegionSettings(1);
    const QString Tag = QString::fromUtf8(argv[4]);
    const int Shared = std::atoi(argv[3]);
    auto Lib = TDrawSetLibrary::Open(QString::fromUtf8(argv[1]));
    TEdit Own(*Lib, std::atoi(argv[2]));
    Own.DS->SetName(QStringLiteral("私有-") + Tag);
    std::unique_ptr<TEdit> Common;
    if (Shared >= 0) {
      Common = std::make_unique<TEdit>(*Lib, Shared);
      Common->DS->SetName(QStringLiteral("共享-") + Tag);
      if (Common->DS->Params().Count() > 0)
        Common->DS->Params().GetItems(0)->SetUnit(Tag);
    }
    std::cout << "ready" << std::endl;
    std::string Go;
    std::getline(std::cin, Go);
    std::cout << "own " << Own.Save(*Lib).toStdString() << std::endl;
    if (Common)
      std::cout << "shared " << Common->Save(*Lib).toStdString() << std::endl;
    return 0;
  } catch (const Exception& E) {
    std::cout << "error " << E.Message().toStdString() << std::endl;
    return 1;
  }
}
