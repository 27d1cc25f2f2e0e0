#include "SqliteDb.h"

#include <sqlite3.h>

namespace {

[[noreturn]] void Fail(sqlite3* ADb, const QString& AWhat) {
  throw EDatabaseError(QStringLiteral("%1: %2").arg(AWhat, QString::fromUtf8(ADb ? sqlite3_errmsg(ADb) : "out of memory")));
}

}  // namespace

TSqliteStatement::TSqliteStatement(sqlite3* ADb, const QString& ASql) : FDb(ADb), FSql(ASql) {
  const QByteArray Sql = ASql.toUtf8();
  if (sqlite3_prepare_v2(FDb, Sql.constData(), static_cast<int>(Sql.size()), &FStmt, nullptr) != SQLITE_OK)
    Fail(FDb, QStringLiteral("数据库语句无法执行"));
}

TSqliteStatement::~TSqliteStatement() { sqlite3_finalize(FStmt); }

void TSqliteStatement::Bind(int AIndex, const QVariant& AValue) {
  int Rc;
  if (AValue.isNull()) {
    Rc = sqlite3_bind_null(FStmt, AIndex);
  } else {
    switch (AValue.typeId()) {
      case QMetaType::Int:
      case QMetaType::LongLong:
      case QMetaType::UInt:
      case QMetaType::Bool:
        Rc = sqlite3_bind_int64(FStmt, AIndex, AValue.toLongLong());
        break;
      case QMetaType::Double:
        Rc = sqlite3_bind_double(FStmt, AIndex, AValue.toDouble());
        break;
      case QMetaType::QByteArray: {
        const QByteArray B = AValue.toByteArray();
        Rc = sqlite3_bind_blob64(FStmt, AIndex, B.constData(), static_cast<sqlite3_uint64>(B.size()), SQLITE_TRANSIENT);
        break;
      }
      default: {
        const QByteArray T = AValue.toString().toUtf8();
        Rc = sqlite3_bind_text64(FStmt, AIndex, T.constData(), static_cast<sqlite3_uint64>(T.size()), SQLITE_TRANSIENT,
                                 SQLITE_UTF8);
      }
    }
  }
  if (Rc != SQLITE_OK)
    Fail(FDb, QStringLiteral("数据库参数无法绑定"));
}

void TSqliteStatement::BindAll(const QVector<QVariant>& AValues) {
  for (int I = 0; I < AValues.size(); ++I)
    Bind(I + 1, AValues[I]);
}

bool TSqliteStatement::Step() {
  const int Rc = sqlite3_step(FStmt);
  if (Rc == SQLITE_ROW)
    return true;
  if (Rc == SQLITE_DONE)
    return false;
  Fail(FDb, QStringLiteral("数据库语句执行失败"));
}

void TSqliteStatement::Reset() {
  sqlite3_reset(FStmt);
  sqlite3_clear_bindings(FStmt);
}

int TSqliteStatement::ColumnCount() const { return sqlite3_column_count(FStmt); }

QString TSqliteStatement::ColumnName(int AIndex) const {
  return QString::fromUtf8(sqlite3_column_name(FStmt, AIndex));
}

QString TSqliteStatement::ColumnDeclType(int AIndex) const {
  const char* T = sqlite3_column_decltype(FStmt, AIndex);
  return T ? QString::fromUtf8(T) : QString();
}

QVariant TSqliteStatement::Column(int AIndex) const {
  switch (sqlite3_column_type(FStmt, AIndex)) {
    case SQLITE_INTEGER:
      return QVariant(static_cast<qint64>(sqlite3_column_int64(FStmt, AIndex)));
    case SQLITE_FLOAT:
      return QVariant(sqlite3_column_double(FStmt, AIndex));
    case SQLITE_BLOB: {
      const void* P = sqlite3_column_blob(FStmt, AIndex);
      return QVariant(QByteArray(static_cast<const char*>(P), sqlite3_column_bytes(FStmt, AIndex)));
    }
    case SQLITE_TEXT:
      return QVariant(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(FStmt, AIndex)),
                                        sqlite3_column_bytes(FStmt, AIndex)));
    default:
      return QVariant();
  }
}

TSqliteDb::TSqliteDb(const QString& AFileName, bool AAllowCreate) : FFileName(AFileName) {
  const int Flags = SQLITE_OPEN_READWRITE | (AAllowCreate ? SQLITE_OPEN_CREATE : 0);
  if (sqlite3_open_v2(EncodeFileName(AFileName).constData(), &FDb, Flags, nullptr) != SQLITE_OK) {
    const QString Msg = QString::fromUtf8(FDb ? sqlite3_errmsg(FDb) : "out of memory");
    sqlite3_close(FDb);
    FDb = nullptr;
    throw EDatabaseError(QStringLiteral("无法打开图集库 %1：%2").arg(AFileName, Msg));
  }
  sqlite3_busy_timeout(FDb, 5000);
  sqlite3_extended_result_codes(FDb, 1);
  Exec(QStringLiteral("PRAGMA foreign_keys = ON"));
}

TSqliteDb::~TSqliteDb() { sqlite3_close(FDb); }

void TSqliteDb::Exec(const QString& ASql) {
  char* Err = nullptr;
  if (sqlite3_exec(FDb, ASql.toUtf8().constData(), nullptr, nullptr, &Err) != SQLITE_OK) {
    const QString Msg = QString::fromUtf8(Err ? Err : "unknown error");
    sqlite3_free(Err);
    throw EDatabaseError(QStringLiteral("数据库语句执行失败：%1").arg(Msg));
  }
}

void TSqliteDb::Exec(const QString& ASql, const QVector<QVariant>& AParams) {
  TSqliteStatement S(FDb, ASql);
  S.BindAll(AParams);
  while (S.Step()) {
  }
}

QVariant TSqliteDb::Scalar(const QString& ASql, const QVector<QVariant>& AParams) {
  TSqliteStatement S(FDb, ASql);
  S.BindAll(AParams);
  return S.Step() ? S.Column(0) : QVariant();
}

TDataPacket TSqliteDb::Query(const QString& ASql, const QVector<QVariant>& AParams,
                             const QVector<TFieldDef>& ATypes) {
  TSqliteStatement S(FDb, ASql);
  S.BindAll(AParams);
  TDataPacket P;
  const int N = S.ColumnCount();
  QVector<QVector<QVariant>> Rows;
  while (S.Step()) {
    QVector<QVariant> Row(N);
    for (int I = 0; I < N; ++I)
      Row[I] = S.Column(I);
    Rows.push_back(std::move(Row));
  }
  for (int I = 0; I < N; ++I) {
    const QString Name = S.ColumnName(I);
    const QString Decl = S.ColumnDeclType(I).toUpper();
    TFieldType Type = TFieldType::ftString;
    bool Known = false;
    for (const TFieldDef& D : ATypes)
      if (SameText(D.Name, Name)) {
        Type = D.DataType;
        Known = true;
      }
    if (!Known && !Decl.isEmpty()) {
      Known = true;
      Type = Decl.contains(QLatin1String("INT"))    ? TFieldType::ftInteger
             : Decl.contains(QLatin1String("BOOL")) ? TFieldType::ftBoolean
             : Decl.contains(QLatin1String("REAL")) || Decl.contains(QLatin1String("FLOA")) ? TFieldType::ftFloat
             : Decl.contains(QLatin1String("BLOB")) ? TFieldType::ftBlob
                                                    : TFieldType::ftString;
    }
    if (!Known)
      for (const auto& Row : Rows)
        if (!Row[I].isNull()) {
          const int T = Row[I].typeId();
          Type = T == QMetaType::LongLong ? TFieldType::ftInteger
                 : T == QMetaType::Double ? TFieldType::ftFloat
                 : T == QMetaType::QByteArray ? TFieldType::ftBlob
                                              : TFieldType::ftString;
          break;
        }
    P.AddField(Name, Type);
  }
  for (auto& Row : Rows)
    P.AddRow(std::move(Row));
  return P;
}

QStringList TSqliteDb::TableColumns(const QString& ATable) {
  QStringList R;
  TSqliteStatement S(FDb, QStringLiteral("PRAGMA table_info(%1)").arg(ATable));
  while (S.Step())
    R << S.Column(1).toString();
  return R;
}

bool TSqliteDb::HasTable(const QString& ATable) {
  return !Scalar(QStringLiteral("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE"), {ATable})
              .isNull();
}
