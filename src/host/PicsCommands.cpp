// dse pics: the bar picture catalogue of a library as the chooser shows it, page by
// page, and a screenshot of the chooser.

#include "ImageFiles.h"
#include "DrawSetConsts.h"
#include "DrawSetLibrary.h"
#include "DseCommands.h"
#include "MZTChooseBarPicFrm.h"
#include "VectorIconViewer.h"

#include <QApplication>

namespace {

const QString Name = QStringLiteral("pics");

QString Numbers(const QVector<TBarPicPageItem>& AItems) {
  QStringList L;
  for (const TBarPicPageItem& I : AItems) L << QString::number(I.BarPicID);
  return L.join(QLatin1Char(' '));
}

int RunPics(const QStringList& AArgs, TDseIO& AIO) {
  QString Lib, Shot;
  int Region = 1, Page = bppSystem;
  for (int I = 0; I < AArgs.size(); ++I) {
    const QString& A = AArgs[I];
    const bool HasValue = I + 1 < AArgs.size();
    if (A == QLatin1String("--region") && HasValue) {
      if (!TryStrToInt(AArgs[++I], Region)) return UsageError(AIO, Name, QStringLiteral("--region takes a whole number"));
    } else if (A == QLatin1String("--page") && HasValue) {
      if (!TryStrToInt(AArgs[++I], Page) || Page < 0 || Page > 4)
        return UsageError(AIO, Name, QStringLiteral("--page takes 0 to 4"));
    } else if (A == QLatin1String("--shot") && HasValue) {
      Shot = AArgs[++I];
    } else if (A.startsWith(QLatin1Char('-'))) {
      return UsageError(AIO, Name, QStringLiteral("unknown option '%1'").arg(A));
    } else if (Lib.isEmpty()) {
      Lib = A;
    } else {
      return UsageError(AIO, Name, QStringLiteral("unexpected argument '%1'").arg(A));
    }
  }
  if (Lib.isEmpty()) return UsageError(AIO, Name, QStringLiteral("pics takes a library file"));
  try {
    const std::shared_ptr<TDrawSetLibrary> L = TDrawSetLibrary::Open(Lib);
    TRegionScope Scope(Region, nullptr);
    const TCommonBarPicList Common = L->CommonBarPics();
    const std::unique_ptr<TBarPicCatalog> C = TBarPicCatalog::Fetch(*L);
    AIO.Out << QStringLiteral("常用图库: %1\n").arg(Numbers(C->Page(bppCommon, Common)));
    AIO.Out << QStringLiteral("BS图库: %1\n").arg(Numbers(C->Page(bppBS, Common)));
    for (const auto& [Bend, BendText] : C->BendEntries())
      for (const auto& [Hook, HookText] : C->HookEntries()) {
        const QVector<TBarPicPageItem> P = C->Page(bppSystem, Common, Bend, Hook);
        if (!P.isEmpty()) AIO.Out << QStringLiteral("系统图库 %1 %2: %3\n").arg(BendText, HookText, Numbers(P));
      }
    AIO.Out << QStringLiteral("香港房屋署图号库: %1\n").arg(Numbers(C->Page(bppHK, Common)));
    for (const auto& [Type, TypeName] : C->CustomTypes())
      AIO.Out << QStringLiteral("自定义图库 %1: %2\n").arg(TypeName, Numbers(C->Page(bppCustom, Common, -1, -1, Type)));
    if (!Shot.isEmpty()) {
      TCommonBarPicStore Saved = CommonBarPicStore();
      CommonBarPicStore() = {[Common] { return Common; }, [](const TCommonBarPicList&) {}};
      TMZTChooseBarPicForm Form(*C, true);
      Form.SetPage(TBarPicPage(Page));
      Form.show();
      QCoreApplication::processEvents();
      QString Error;
      const bool Ok = SavePng(Form.grab().toImage(), Shot, Error);
      CommonBarPicStore() = Saved;
      if (!Ok) {
        AIO.Err << QStringLiteral("error: cannot write %1\n").arg(Shot);
        return ecFailed;
      }
    }
  } catch (const Exception& X) {
    AIO.Err << "error: " << X.Message() << '\n';
    return ecFailed;
  }
  return ecOk;
}

}  // namespace

void RegisterPicsCommands(TDseCommandLine& ACommands) {
  ACommands.Register({Name, QStringLiteral("list the bar pictures page by page as the chooser shows them"),
                      QStringLiteral("Usage: dse pics LIBRARY [--region N] [--shot FILE.png [--page 0-4]]\n"
                                     "\n"
                                     "Prints the picture numbers of each page of the bar picture chooser: the common\n"
                                     "list, the BS list, the system pictures by bend and hook, the housing department's\n"
                                     "pictures and the custom pictures by type. --shot writes a screenshot of the\n"
                                     "chooser on page N (default 2, the system page).\n"),
                      RunPics});
}
