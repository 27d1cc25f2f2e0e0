#pragma once
// An in-memory table with a change log, the way the draw-set data travels between the
// editor and a data server: a server hands out a data packet, the editor edits rows,
// and the delta of the change log goes back on save.

#include "SysUtils.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <memory>
#include <vector>

class EDatabaseError : public Exception {
public:
  using Exception::Exception;
};

enum class TFieldType { ftInteger, ftFloat, ftBoolean, ftString, ftBlob };

// Integer values are held as qint64, floats as double, booleans as bool, strings as
// QString, blobs as QByteArray. A null QVariant is SQL NULL.
struct TFieldDef {
  QString Name;
  TFieldType DataType = TFieldType::ftString;
  bool operator==(const TFieldDef&) const = default;
};

enum class TUpdateStatus { usUnmodified, usModified, usInserted, usDeleted };

// One row of a packet. In a delta, usModified rows carry the current values in
// Values and the values as first read in OldValues; usDeleted rows carry the values
// as first read in both; usInserted rows only Values.
struct TPacketRow {
  TUpdateStatus Status = TUpdateStatus::usUnmodified;
  QVector<QVariant> Values;
  QVector<QVariant> OldValues;
};

// A data packet: field definitions and rows, a plain value. An empty packet (no
// fields) stands for Null.
struct TDataPacket {
  QVector<TFieldDef> Fields;
  QVector<TPacketRow> Rows;

  bool IsNull() const { return Fields.isEmpty(); }
  int FieldIndex(const QString& AName) const;  // -1 when absent, names without case
  void AddField(const QString& AName, TFieldType AType) { Fields.push_back({AName, AType}); }
  TPacketRow& AddRow(QVector<QVariant> AValues);
  QVariant Value(int ARow, const QString& AField) const;
};

class TClientDataSet;
struct TDataSetFilter;

// A handle on one field of the current row; cheap to copy, valid while the dataset
// keeps its field definitions.
class TField {
public:
  TField(TClientDataSet* ADataSet, int AIndex) : FDataSet(ADataSet), FIndex(AIndex) {}

  const QString& FieldName() const;
  TFieldType DataType() const;
  int Index() const { return FIndex; }

  QVariant Value() const;
  bool IsNull() const { return Value().isNull(); }
  QString AsString() const;   // the field's text: integers in decimal, floats as FloatToStr
  qint64 AsInteger() const;   // strict; raises EConvertError on a text that is not one
  double AsFloat() const;
  bool AsBoolean() const;
  QByteArray AsBytes() const;

  void SetValue(const QVariant& AValue) const;  // converted to the field's type
  void SetAsString(const QString& AText) const;
  void SetAsInteger(qint64 AValue) const { SetValue(AValue); }
  void SetAsFloat(double AValue) const { SetValue(AValue); }
  void SetAsBoolean(bool AValue) const { SetValue(AValue); }
  void SetAsBytes(const QByteArray& AValue) const { SetValue(AValue); }
  void Clear() const { SetValue(QVariant()); }

private:
  TClientDataSet* FDataSet;
  int FIndex;
};

enum class TDataSetState { dsInactive, dsBrowse, dsEdit, dsInsert };

class TClientDataSet {
public:
  TClientDataSet();
  ~TClientDataSet();
  TClientDataSet(const TClientDataSet&) = delete;
  TClientDataSet& operator=(const TClientDataSet&) = delete;

  // Data in: replaces fields and rows, empties the change log and opens the dataset.
  // Data out: the current rows (deleted ones left out) with their statuses.
  void SetData(const TDataPacket& AData);
  TDataPacket Data() const;

  // The change log as a packet of the same fields; Null (no fields) when empty.
  TDataPacket Delta() const;
  // Rows that differ from what was read: inserted, modified or deleted.
  int ChangeCount() const;
  // A mark in the change log; assigning an earlier mark undoes everything after it.
  int SavePoint() const;
  void SetSavePoint(int AValue);
  // Makes the current state the read state: the log is emptied.
  void MergeChangeLog();
  void CancelUpdates() { SetSavePoint(0); }

  void Open();
  void Close();
  bool Active() const { return FState != TDataSetState::dsInactive; }
  TDataSetState State() const { return FState; }

  const QVector<TFieldDef>& FieldDefs() const { return FFields; }
  TField FieldByName(const QString& AName);
  int FieldIndex(const QString& AName) const;
  TField Fields(int AIndex) { return TField(this, AIndex); }

  void First();
  void Last();
  void Next();
  void Prior();
  bool Eof() const { return FEof; }
  bool Bof() const { return FBof; }
  bool IsEmpty() const;
  int RecordCount() const;
  int RecNo() const;  // 1-based position in the view, 0 when empty

  void Append();
  void Insert() { Append(); }
  void Edit();
  void Post();
  void Cancel();
  void Delete();

  // Sort order of the view: field names separated by ";"; empty keeps read order.
  QString IndexFieldNames() const { return FIndexFieldNames; }
  void SetIndexFieldNames(const QString& ANames);
  // Exact match on the index fields (as many as values given); moves to the row.
  bool FindKey(const QVector<QVariant>& AKeyValues);
  // Match on the named fields (";"-separated); moves to the first row that matches.
  bool Locate(const QString& AFieldNames, const QVector<QVariant>& AValues);

  // Filter text: comparisons (= <> < > <= >=) of fields and literals (numbers,
  // 'strings', NULL) combined with and, or, not and parentheses; names without case.
  QString Filter() const { return FFilter; }
  void SetFilter(const QString& AFilter);
  bool Filtered() const { return FFiltered; }
  void SetFiltered(bool AValue);

private:
  friend class TField;
  struct TRecord;
  struct TLogEntry;

  QVariant GetValue(int AIndex) const;
  void PutValue(int AIndex, const QVariant& AValue);
  void CheckActive() const;
  void CheckBrowseMode();
  void InvalidateView();
  void EnsureView() const;
  void SetCurrentToRecord(int ARecIndex);
  int ViewPos() const;  // position of the current row in the view, -1 when not there
  void Log(int ARecIndex, bool ACreated);
  bool RecordMatchesFilter(const TRecord& ARec) const;
  QVector<int> ParseFieldList(const QString& ANames) const;

  QVector<TFieldDef> FFields;
  std::vector<TRecord> FRecords;        // read order, then appended ones
  std::vector<TLogEntry> FLog;
  mutable std::vector<int> FView;       // indexes into FRecords, visible, sorted
  mutable bool FViewValid = false;
  int FCurrent = -1;                    // index into FRecords of the current row
  mutable int FPos = -1;                // its position in FView when known
  bool FEof = true;
  bool FBof = true;
  TDataSetState FState = TDataSetState::dsInactive;
  QVector<QVariant> FBuffer;            // the row being edited or inserted
  QString FIndexFieldNames;
  QVector<int> FIndexFields;
  QString FFilter;
  bool FFiltered = false;
  std::shared_ptr<const TDataSetFilter> FFilterTree;
};

// Converts a value to a field type (text is parsed strictly); raises EConvertError.
QVariant ConvertFieldValue(const QVariant& AValue, TFieldType AType);
// Orders two values of a field type; nulls first.
int CompareFieldValues(const QVariant& A, const QVariant& B);
