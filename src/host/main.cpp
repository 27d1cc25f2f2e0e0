#include "DseCommands.h"
#include "QtDialogs.h"
#include "SysUtils.h"

#include <QDir>
#include <QFile>
#include <QApplication>

#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace {

QtMessageHandler GQtHandler = nullptr;

// The offscreen platform reports every window it cannot size by hints; that is no
// news to a user.
void FilterQtMessages(QtMsgType AType, const QMessageLogContext& AContext, const QString& AText) {
  if (AText.contains(QLatin1String("does not support propagateSizeHints"))) return;
  if (GQtHandler) GQtHandler(AType, AContext, AText);
}

}  // namespace

int main(int argc, char** argv) {
  GQtHandler = qInstallMessageHandler(FilterQtMessages);
  // Only the editor window goes to a display when there is one; the rest draws and
  // measures text offscreen.
  const bool Interactive = argc >= 2 && std::strcmp(argv[1], "edit") == 0;
  const bool Display = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !(Interactive && Display))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
    const QByteArray Dir = QDir::tempPath().toLocal8Bit() + "/dse-runtime-" + QByteArray::number(getuid());
    QDir().mkpath(QString::fromLocal8Bit(Dir));
    QFile::setPermissions(QString::fromLocal8Bit(Dir), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", Dir);
  }
  QApplication App(argc, argv);
  TQtDialogs::InstallTranslations();  // Chinese standard buttons wherever a window shows
  QTextStream Out(stdout);
  QTextStream Err(stderr);
  TDseIO IO{Out, Err};
  RegisterAllCommands(DseCommands());
  // Arguments by their exact bytes: a file name that is not UTF-8 opens the same file.
  QStringList Args;
  for (int I = 1; I < argc; ++I) Args << DecodeFileName(QByteArray(argv[I]));
  const int Code = DseCommands().Run(Args, IO);
  Out.flush();
  Err.flush();
  return Code;
}
