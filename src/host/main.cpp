#include "DseCommands.h"
#include "QtDialogs.h"

#include <QDir>
#include <QFile>
#include <QApplication>

#include <unistd.h>

#include <cstdio>

int main(int argc, char** argv) {
  // The command line shows no window; drawing and text measure still need a platform.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
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
  const int Code = DseCommands().Run(App.arguments().mid(1), IO);
  Out.flush();
  Err.flush();
  return Code;
}
