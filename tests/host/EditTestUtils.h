#pragma once
// Plays window scripts through `dse edit` on a fresh demo library per test.

#include "DseTestRun.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace edit_test {

inline QString S(const char* AText) { return QString::fromUtf8(AText); }

inline QByteArray ReadAll(const QString& AFile) {
  QFile F(AFile);
  F.open(QIODevice::ReadOnly);
  return F.readAll();
}

class EditCommandsTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(Dir.isValid());
    Lib = Dir.filePath(S("demo.db"));
    const TDseResult R = RunDse({S("init"), Lib});
    ASSERT_EQ(R.Code, 0) << R.Err.toStdString();
  }
  QString Write(const QString& AName, const QString& AText) {
    const QString P = Dir.filePath(AName);
    QFile F(P);
    F.open(QIODevice::WriteOnly | QIODevice::Truncate);
    F.write(AText.toUtf8());
    return P;
  }
  // Plays a script on draw set AID in the window; the settings stay in the test's folder.
  TDseResult Edit(int AID, const QString& AScript, const QStringList& AExtra = {}) {
    const QString P = Write(S("edit.txt"), AScript);
    return RunDse(QStringList{S("edit"), Lib, QString::number(AID), S("-s"), P, S("--settings"),
                              Dir.filePath(S("t.ini"))} +
                  AExtra);
  }
  QJsonObject Show(int AID, int ARegion = 1) {
    const TDseResult R = RunDse({S("show"), Lib, QString::number(AID), S("--json"), S("--region"), QString::number(ARegion)});
    EXPECT_EQ(R.Code, 0) << R.Err.toStdString();
    return QJsonDocument::fromJson(R.Out.toUtf8()).object();
  }
  QTemporaryDir Dir;
  QString Lib;
};

// A line drawn in the window's own coordinates: world (x, y) is pixel (400 + x, 300 - y).
inline const char* DrawLine =
    "size 800 600\n"
    "view 0 0 1\n"
    "set snap off\n"
    "action acDrawLine\n"
    "click 10,10\n"
    "click 100,10\n"
    "rclick\n";

inline QStringList Lines(const TDseResult& R) { return R.Out.split(u'\n', Qt::SkipEmptyParts); }

}  // namespace edit_test

using namespace edit_test;
