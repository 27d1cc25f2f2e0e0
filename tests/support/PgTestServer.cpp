#include "PgTestServer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

#include <libpq-fe.h>

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace {

QString FindBinDir() {
  const QString InPath = QStandardPaths::findExecutable(QStringLiteral("initdb"));
  if (!InPath.isEmpty() && QFileInfo::exists(QFileInfo(InPath).absolutePath() + QStringLiteral("/pg_ctl")))
    return QFileInfo(InPath).canonicalPath();
  // Debian keeps the server programs out of PATH, one directory per major version
  QDir Root(QStringLiteral("/usr/lib/postgresql"));
  QStringList Versions = Root.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  std::sort(Versions.begin(), Versions.end(), [](const QString& A, const QString& B) { return A.toInt() > B.toInt(); });
  for (const QString& V : Versions)
    if (QFileInfo::exists(Root.filePath(V + QStringLiteral("/bin/initdb"))))
      return Root.filePath(V + QStringLiteral("/bin"));
  return {};
}

}  // namespace

TPgTestServer& TPgTestServer::Shared() {
  static TPgTestServer Server;
  return Server;
}

TPgTestServer::TPgTestServer() {
  FBinDir = FindBinDir();
  if (FBinDir.isEmpty()) {
    FMissing = true;
    FWhy = QStringLiteral("the PostgreSQL server programs (initdb, pg_ctl) are not installed");
    return;
  }
  FRunning = Start();
}

TPgTestServer::~TPgTestServer() {
  if (!FRunning)
    return;
  const QString Data = FDir->filePath(QStringLiteral("data"));
  // std::system: Qt's process machinery may be gone this late in the process's exit
  const QString Cmd = QStringLiteral("%1'%2/pg_ctl' -D '%3' -m immediate -w stop >/dev/null 2>&1")
                          .arg(FAsPostgres ? QStringLiteral("runuser -u postgres -- ") : QString(), FBinDir, Data);
  [[maybe_unused]] const int Rc = std::system(Cmd.toLocal8Bit().constData());
}

bool TPgTestServer::Run(const QString& AProgram, const QStringList& AArgs, QString* AOutput) const {
  QProcess P;
  P.setProcessChannelMode(QProcess::MergedChannels);
  if (FAsPostgres)
    P.start(QStringLiteral("runuser"), QStringList{QStringLiteral("-u"), QStringLiteral("postgres"), QStringLiteral("--"),
                                                    FBinDir + u'/' + AProgram} + AArgs);
  else
    P.start(FBinDir + u'/' + AProgram, AArgs);
  const bool Done = P.waitForFinished(120000);
  if (AOutput)
    *AOutput = QString::fromLocal8Bit(P.readAll());
  return Done && P.exitStatus() == QProcess::NormalExit && P.exitCode() == 0;
}

bool TPgTestServer::Start() {
  FDir = std::make_unique<QTemporaryDir>(QStringLiteral("/tmp/dse-pg-XXXXXX"));
  if (!FDir->isValid()) {
    FWhy = QStringLiteral("no temporary directory for the server");
    return false;
  }
  // The server refuses to run as root; it runs as the postgres account then.
  if (geteuid() == 0) {
    const passwd* Pw = getpwnam("postgres");
    if (!Pw) {
      FWhy = QStringLiteral("running as root and there is no postgres account to run the server as");
      return false;
    }
    if (chown(QFile::encodeName(FDir->path()).constData(), Pw->pw_uid, Pw->pw_gid) != 0) {
      FWhy = QStringLiteral("cannot hand the server's directory to the postgres account");
      return false;
    }
    FAsPostgres = true;
  }
  const QString Data = FDir->filePath(QStringLiteral("data"));
  QString Out;
  if (!Run(QStringLiteral("initdb"), {QStringLiteral("-D"), Data, QStringLiteral("-A"), QStringLiteral("trust"),
                                      QStringLiteral("-U"), QStringLiteral("postgres"), QStringLiteral("-E"),
                                      QStringLiteral("UTF8"), QStringLiteral("--locale=C"), QStringLiteral("--no-sync")},
           &Out)) {
    FWhy = QStringLiteral("initdb failed: ") + Out;
    return false;
  }
  // the password role is checked first; everyone else is trusted on the socket
  QFile Hba(Data + QStringLiteral("/pg_hba.conf"));
  if (!Hba.open(QIODevice::ReadOnly)) {
    FWhy = QStringLiteral("cannot read pg_hba.conf");
    return false;
  }
  const QByteArray Rules = "local all " + PasswordUser().toUtf8() + " scram-sha-256\n" + Hba.readAll();
  Hba.close();
  if (!Hba.open(QIODevice::WriteOnly | QIODevice::Truncate) || Hba.write(Rules) != Rules.size()) {
    FWhy = QStringLiteral("cannot write pg_hba.conf");
    return false;
  }
  Hba.close();
  const QString Options = QStringLiteral("-k %1 -c listen_addresses= -F -c max_connections=60").arg(FDir->path());
  if (!Run(QStringLiteral("pg_ctl"), {QStringLiteral("-D"), Data, QStringLiteral("-o"), Options, QStringLiteral("-w"),
                                      QStringLiteral("-l"), FDir->filePath(QStringLiteral("log")), QStringLiteral("start")},
           &Out)) {
    QFile Log(FDir->filePath(QStringLiteral("log")));
    FWhy = QStringLiteral("the server did not start: ") + Out +
           (Log.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(Log.readAll()) : QString());
    return false;
  }
  FRunning = true;
  QString Err;
  if (!Exec(QStringLiteral("postgres"),
            QStringLiteral("CREATE ROLE %1 LOGIN PASSWORD '%2'").arg(PasswordUser(), Password()), &Err)) {
    FWhy = Err;
    return false;
  }
  return true;
}

QString TPgTestServer::SocketDir() const { return FDir ? FDir->path() : QString(); }

QString TPgTestServer::Uri(const QString& ADatabase, const QString& AUser, const QString& APassword) const {
  QString U = QStringLiteral("postgresql:///%1?host=%2&user=%3")
                  .arg(ADatabase, QString::fromLatin1(QUrl::toPercentEncoding(SocketDir())), AUser);
  if (!APassword.isEmpty())
    U += QStringLiteral("&password=") + QString::fromLatin1(QUrl::toPercentEncoding(APassword));
  return U;
}

bool TPgTestServer::Exec(const QString& ADatabase, const QString& ASql, QString* AError) const {
  PGconn* C = PQconnectdb(Uri(ADatabase).toUtf8().constData());
  bool Ok = PQstatus(C) == CONNECTION_OK;
  if (Ok) {
    PGresult* R = PQexec(C, ASql.toUtf8().constData());
    Ok = PQresultStatus(R) == PGRES_COMMAND_OK || PQresultStatus(R) == PGRES_TUPLES_OK;
    if (!Ok && AError)
      *AError = QString::fromUtf8(PQresultErrorMessage(R));
    PQclear(R);
  } else if (AError) {
    *AError = QString::fromUtf8(PQerrorMessage(C));
  }
  PQfinish(C);
  return Ok;
}

QString TPgTestServer::CreateDatabase() {
  const QString Name = QStringLiteral("dse_test_%1_%2").arg(getpid()).arg(FNextDb++);
  QString Err;
  if (!Exec(QStringLiteral("postgres"), QStringLiteral("CREATE DATABASE %1").arg(Name), &Err))
    return {};
  return Uri(Name);
}
