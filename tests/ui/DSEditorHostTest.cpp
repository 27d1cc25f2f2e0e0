// A host program's view of libdseditor: load it, call ExecDSEditor with our own
// in-memory servers, get the window's result back.

#include "DSEditor.h"

#include "../app/MemoryDataSvr.h"

#include <QApplication>
#include <QLibrary>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

// Closes the editor window as soon as it shows; counts the windows it saw.
struct TCloser {
  int Seen = 0;
  QString Title;
  QTimer Timer;
  TCloser() {
    QObject::connect(&Timer, &QTimer::timeout, [this] {
      for (QWidget* W : QApplication::topLevelWidgets())
        if (W->isVisible() && W->windowTitle() == QStringLiteral("图集编辑器")) {
          ++Seen;
          Title = W->windowTitle();
          W->close();
        }
    });
    Timer.start(20);
  }
};

TExecDSEditorFunc Resolve(QLibrary& ALib) {
  if (!ALib.load()) return nullptr;
  return reinterpret_cast<TExecDSEditorFunc>(ALib.resolve("ExecDSEditor"));
}

}  // namespace

TEST(DSEditorLibrary, ExportsOnlyTheEntryPoint) {
  QLibrary Lib(QStringLiteral(DSEDITOR_LIBRARY));
  ASSERT_NE(Resolve(Lib), nullptr) << Lib.errorString().toStdString();
  // The modules inside stay private to the library.
  EXPECT_EQ(Lib.resolve("_Z11RunDSEditorP7QWidgetiP18IMZTBarInfoDataSvrP16IDrawingsDataSvrP13IMZTDiamDictsi"), nullptr);
  EXPECT_EQ(Lib.resolve("_Z7Dialogsv"), nullptr);
}

TEST(DSEditorLibrary, EveryCloseGivesTwo) {
  QLibrary Lib(QStringLiteral(DSEDITOR_LIBRARY));
  const TExecDSEditorFunc Exec = Resolve(Lib);
  ASSERT_NE(Exec, nullptr) << Lib.errorString().toStdString();
  TMemoryDataSvr Server;
  QWidget Host;
  for (const int Region : {1, 0, 12}) {
    SCOPED_TRACE(Region);
    TCloser Closer;
    EXPECT_EQ(Exec(&Host, 1, &Server, &Server, nullptr, Region), 2);
    EXPECT_EQ(Closer.Seen, 1);
  }
  EXPECT_EQ(Server.Saves, 0);
}

TEST(DSEditorLibrary, AFailedRunReportsMinusOne) {
  QLibrary Lib(QStringLiteral(DSEDITOR_LIBRARY));
  const TExecDSEditorFunc Exec = Resolve(Lib);
  ASSERT_NE(Exec, nullptr);
  TMemoryDataSvr Server;
  TCloser Closer;
  // No such draw set, no server, a server that fails: no window stays, -1 comes back.
  EXPECT_EQ(Exec(nullptr, 99, &Server, &Server, nullptr, 1), -1);
  EXPECT_EQ(Exec(nullptr, 1, &Server, nullptr, nullptr, 1), -1);
  Server.Status = E_SERVER_FAIL;
  EXPECT_EQ(Exec(nullptr, 1, &Server, &Server, nullptr, 1), -1);
  EXPECT_EQ(Closer.Seen, 0);
}
