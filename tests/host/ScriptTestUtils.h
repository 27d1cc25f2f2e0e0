#pragma once
// Plays editor scripts through `dse draw` on a new drawing and reads what they print.

#include "DseTestRun.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& S, std::ostream* O) { *O << S.toStdString(); }
QT_END_NAMESPACE

// A folder for the scripts and files of one test program.
inline QTemporaryDir& ScriptDir() {
  static QTemporaryDir Dir;
  return Dir;
}

// World (x, y) is pixel (400 + x, 300 - y); snap and grid off, no marks unless the
// script sets them. Returns the lines printed.
inline QStringList Play(const QString& AScript) {
  const QString S = ScriptDir().filePath(QStringLiteral("play.txt"));
  QFile F(S);
  F.open(QIODevice::WriteOnly | QIODevice::Truncate);
  F.write(QStringLiteral("size 800 600\nview 0 0 1\nset snap off\nprop ptStartMarkStyle \"[无]\"\n"
                         "prop ptEndMarkStyle \"[无]\"\n")
              .toUtf8() +
          AScript.toUtf8());
  F.close();
  // Each play starts from the default settings: the editor writes its file on the way out.
  const QString Ini = ScriptDir().filePath(QStringLiteral("t.ini"));
  QFile::remove(Ini);
  const TDseResult R = RunDse({QStringLiteral("draw"), QStringLiteral("--new"), QStringLiteral("-s"), S,
                               QStringLiteral("--settings"), Ini});
  EXPECT_EQ(R.Code, 0) << R.Err.toStdString();
  return R.Out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

// The objects of the "print item" lines, in order.
inline std::vector<QJsonObject> Items(const QStringList& ALines) {
  std::vector<QJsonObject> R;
  for (const QString& L : ALines)
    if (L.startsWith(QLatin1Char('{'))) R.push_back(QJsonDocument::fromJson(L.toUtf8()).object());
  return R;
}

inline QString Pt(const QJsonObject& O, const char* AKey) {
  const QJsonArray A = O.value(QLatin1String(AKey)).toArray();
  return QStringLiteral("%1,%2").arg(A.at(0).toDouble()).arg(A.at(1).toDouble());
}

inline QString Line(const QStringList& ALines, const QString& APrefix) {
  for (const QString& L : ALines)
    if (L.startsWith(APrefix)) return L;
  return QString();
}

inline QByteArray ReadScriptFile(const QString& AName) {
  QFile F(ScriptDir().filePath(AName));
  F.open(QIODevice::ReadOnly);
  return F.readAll();
}
