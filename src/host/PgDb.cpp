#include "PgDb.h"

#include <QUrl>
#include <QUrlQuery>

#include <libpq-fe.h>

#include <cstdlib>
#include <memory>

namespace {

// Type OIDs of the built-in types the library uses.
enum : Oid { kBoolOid = 16, kByteaOid = 17, kInt8Oid = 20, kInt2Oid = 21, kInt4Oid = 23, kOidOid = 26,
             kFloat4Oid = 700, kFloat8Oid = 701, kNumericOid = 1700 };

struct TResultDeleter {
  void operator()(PGresult* R) const { PQclear(R); }
};
using TResult = std::unique_ptr<PGresult, TResultDeleter>;

QString Trimmed(const char* AText) { return QString::fromUtf8(AText).trimmed(); }

TFieldType FieldTypeOf(Oid AType) {
  switch (AType) {
    case kBoolOid: return TFieldType::ftBoolean;
    case kByteaOid: return TFieldType::ftBlob;
    case kInt8Oid:
    case kInt2Oid:
    case kInt4Oid:
    case kOidOid: return TFieldType::ftInteger;
    case kFloat4Oid:
    case kFloat8Oid:
    case kNumericOid: return TFieldType::ftFloat;
    default: return TFieldType::ftString;
  }
}

QVariant Decode(const PGresult* R, int ARow, int ACol, TFieldType AType) {
  if (PQgetisnull(R, ARow, ACol))
    return QVariant();
  const char* V = PQgetvalue(R, ARow, ACol);
  const int Len = PQgetlength(R, ARow, ACol);
  switch (AType) {
    case TFieldType::ftBoolean: return QVariant(V[0] == 't');
    case TFieldType::ftInteger: return QVariant(static_cast<qint64>(std::strtoll(V, nullptr, 10)));
    case TFieldType::ftFloat: return QVariant(std::strtod(V, nullptr));
    case TFieldType::ftBlob:
      // bytea's text form is hex: \x followed by two digits a byte
      if (Len >= 2 && V[0] == '\\' && V[1] == 'x')
        return QVariant(QByteArray::fromHex(QByteArray::fromRawData(V + 2, Len - 2)));
      {
        size_t Out = 0;
        unsigned char* B = PQunescapeBytea(reinterpret_cast<const unsigned char*>(V), &Out);
        QByteArray A(reinterpret_cast<const char*>(B), static_cast<qsizetype>(Out));
        PQfreemem(B);
        return QVariant(A);
      }
    case TFieldType::ftString: break;
  }
  return QVariant(QString::fromUtf8(V, Len));
}

}  // namespace

QString TPgDb::MaskedUri(const QString& AUri) {
  QUrl U(AUri);
  if (!U.isValid())
    return QStringLiteral("（无法解析的连接地址）");
  if (!U.password().isEmpty())
    U.setPassword(QStringLiteral("***"));
  QUrlQuery Q(U);
  if (Q.hasQueryItem(QStringLiteral("password"))) {
    Q.removeAllQueryItems(QStringLiteral("password"));
    Q.addQueryItem(QStringLiteral("password"), QStringLiteral("***"));
    U.setQuery(Q);
  }
  return U.toString(QUrl::PrettyDecoded);
}

QByteArray TPgDb::NumberedParams(const QString& ASql) {
  const QByteArray In = ASql.toUtf8();
  QByteArray Out;
  Out.reserve(In.size() + 16);
  int N = 0;
  char Quote = 0;
  for (qsizetype I = 0; I < In.size(); ++I) {
    const char C = In[I];
    if (Quote) {
      Out += C;
      if (C == Quote)
        Quote = 0;
    } else if (C == '\'' || C == '"') {
      Quote = C;
      Out += C;
    } else if (C == '-' && I + 1 < In.size() && In[I + 1] == '-') {
      while (I < In.size() && In[I] != '\n')
        Out += In[I++];
      if (I < In.size())
        Out += '\n';
    } else if (C == '?') {
      Out += '$' + QByteArray::number(++N);
    } else {
      Out += C;
    }
  }
  return Out;
}

TPgDb::TPgDb(const QString& AUri) : FLocation(MaskedUri(AUri)) {
  // The URI's own settings win over these, except the encoding, which must be ours.
  const QByteArray Uri = AUri.toUtf8();
  const char* Keys[] = {"connect_timeout", "application_name", "dbname", "client_encoding", nullptr};
  const char* Values[] = {"10", "dse", Uri.constData(), "UTF8", nullptr};
  FConn = PQconnectdbParams(Keys, Values, 1);
  if (!FConn)
    throw EDatabaseError(QStringLiteral("无法连接图集库服务器 %1：内存不足").arg(FLocation));
  if (PQstatus(FConn) != CONNECTION_OK) {
    const QString Why = Trimmed(PQerrorMessage(FConn));
    PQfinish(FConn);
    FConn = nullptr;
    throw EDatabaseError(QStringLiteral("无法连接图集库服务器 %1：%2").arg(FLocation, Why));
  }
  // notices (a table dropped that was not there, ...) are not the user's business
  PQsetNoticeProcessor(FConn, [](void*, const char*) {}, nullptr);
}

TPgDb::~TPgDb() { PQfinish(FConn); }

namespace {

TResult Check(pg_conn* AConn, PGresult* ARes) {
  TResult R(ARes);
  const ExecStatusType St = R ? PQresultStatus(R.get()) : PGRES_FATAL_ERROR;
  if (St == PGRES_COMMAND_OK || St == PGRES_TUPLES_OK || St == PGRES_EMPTY_QUERY)
    return R;
  const QString Msg = R ? Trimmed(PQresultErrorMessage(R.get())) : Trimmed(PQerrorMessage(AConn));
  const char* State = R ? PQresultErrorField(R.get(), PG_DIAG_SQLSTATE) : nullptr;
  const QByteArray Code = State ? QByteArray(State) : QByteArray();
  // unique or foreign-key violation, serialization failure, deadlock
  if (Code == "23505" || Code == "23503" || Code == "40001" || Code == "40P01")
    throw EDatabaseConflict(QStringLiteral("数据库语句执行失败：%1").arg(Msg));
  if (PQstatus(AConn) != CONNECTION_OK)
    throw EDatabaseError(QStringLiteral("与图集库服务器的连接已断开：%1").arg(Msg));
  throw EDatabaseError(QStringLiteral("数据库语句执行失败：%1").arg(Msg));
}

TResult Run(pg_conn* AConn, const QString& ASql, const QVector<QVariant>& AParams) {
  const QByteArray Sql = TPgDb::NumberedParams(ASql);
  const int N = int(AParams.size());
  QVector<QByteArray> Data(N);
  QVector<const char*> Values(N, nullptr);
  QVector<int> Lengths(N, 0), Formats(N, 0);
  for (int I = 0; I < N; ++I) {
    const QVariant& V = AParams[I];
    if (V.isNull())
      continue;
    switch (V.typeId()) {
      case QMetaType::Bool: Data[I] = V.toBool() ? "true" : "false"; break;
      case QMetaType::Double: Data[I] = QByteArray::number(V.toDouble(), 'g', 17); break;
      case QMetaType::QByteArray:
        Data[I] = V.toByteArray();
        Formats[I] = 1;  // raw bytes for bytea
        break;
      default:
        Data[I] = V.toString().toUtf8();
        // text goes as a C string: a NUL would cut it short without a word
        if (Data[I].contains('\0'))
          throw EDatabaseError(QStringLiteral("数据库语句执行失败：文本中含有空字符（U+0000），图集库服务器不能保存"));
    }
    Values[I] = Data[I].constData();
    Lengths[I] = int(Data[I].size());
  }
  return Check(AConn, PQexecParams(AConn, Sql.constData(), N, nullptr, Values.constData(), Lengths.constData(),
                                   Formats.constData(), 0));
}

}  // namespace

void TPgDb::Exec(const QString& ASql) { Check(FConn, PQexec(FConn, ASql.toUtf8().constData())); }

void TPgDb::Exec(const QString& ASql, const QVector<QVariant>& AParams) { Run(FConn, ASql, AParams); }

QVariant TPgDb::Scalar(const QString& ASql, const QVector<QVariant>& AParams) {
  const TResult R = Run(FConn, ASql, AParams);
  if (PQntuples(R.get()) == 0 || PQnfields(R.get()) == 0)
    return QVariant();
  return Decode(R.get(), 0, 0, FieldTypeOf(PQftype(R.get(), 0)));
}

TDataPacket TPgDb::Query(const QString& ASql, const QVector<QVariant>& AParams, const QVector<TFieldDef>& ATypes) {
  const TResult R = Run(FConn, ASql, AParams);
  const int Cols = PQnfields(R.get()), Rows = PQntuples(R.get());
  TDataPacket P;
  QVector<TFieldType> Types(Cols);
  for (int C = 0; C < Cols; ++C) {
    const QString Name = KnownName(QString::fromUtf8(PQfname(R.get(), C)));
    Types[C] = FieldTypeOf(PQftype(R.get(), C));
    TFieldType Declared = Types[C];
    for (const TFieldDef& D : ATypes)
      if (SameText(D.Name, Name))
        Declared = D.DataType;
    P.AddField(Name, Declared);
  }
  P.Rows.reserve(Rows);
  for (int Row = 0; Row < Rows; ++Row) {
    QVector<QVariant> Values(Cols);
    for (int C = 0; C < Cols; ++C)
      Values[C] = Decode(R.get(), Row, C, Types[C]);
    P.AddRow(std::move(Values));
  }
  return P;
}

QStringList TPgDb::TableColumns(const QString& ATable) {
  QStringList R;
  const TDataPacket P = Query(QStringLiteral("SELECT column_name FROM information_schema.columns"
                                             " WHERE table_schema = current_schema() AND table_name = lower(?)"
                                             " ORDER BY ordinal_position"),
                              {ATable});
  for (const TPacketRow& Row : P.Rows)
    R << KnownName(Row.Values[0].toString());
  return R;
}

bool TPgDb::HasTable(const QString& ATable) {
  return !Scalar(QStringLiteral("SELECT 1 FROM information_schema.tables"
                                " WHERE table_schema = current_schema() AND table_name = lower(?)"),
                 {ATable})
              .isNull();
}
