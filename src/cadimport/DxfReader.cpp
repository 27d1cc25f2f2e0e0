// Reading a DXF file into the reader's model: groups, sections, tables, blocks, entities.

#include "DxfReader.h"

#include "DxfModel.h"
#include "DxfWalk.h"

#include <QStringDecoder>

#include <charconv>
#include <cmath>
#include <cstring>
#include <map>
#include <string_view>

namespace dxf {
namespace {

using TGroups = std::vector<std::pair<int, std::string_view>>;

[[noreturn]] void Fail(qint64 ALine, const QString& AWhat) {
  throw EDxfError(QStringLiteral("DXF 文件第 %1 行：%2").arg(QString::number(ALine), AWhat));
}

std::string_view Trimmed(std::string_view S) {
  while (!S.empty() && (S.front() == ' ' || S.front() == '\t')) S.remove_prefix(1);
  while (!S.empty() && (S.back() == ' ' || S.back() == '\t' || S.back() == '\r')) S.remove_suffix(1);
  return S;
}

std::string Upper(std::string_view S) {
  std::string R(S);
  for (char& C : R)
    if (C >= 'a' && C <= 'z') C = char(C - 'a' + 'A');
  return R;
}

// Code and value lines in pairs, with the line number of each code.
class TScanner {
public:
  TScanner(const char* AData, qint64 ASize) : FBegin(AData), FP(AData), FEnd(AData + ASize) {}

  // False at the end of the data.
  bool Next() {
    if (FPushed) {
      FPushed = false;
      return true;
    }
    std::string_view CodeLine;
    if (!ReadLine(CodeLine))
      return false;
    CodeLineNo = FLine;
    CodeLine = Trimmed(CodeLine);
    int C = 0;
    const auto [End, Ec] = std::from_chars(CodeLine.data(), CodeLine.data() + CodeLine.size(), C);
    if (Ec != std::errc() || End != CodeLine.data() + CodeLine.size() || CodeLine.empty()) {
      if (FP >= FEnd) Fail(FLine, QStringLiteral("文件意外结束（文件不完整）"));
      Fail(FLine, QStringLiteral("组码“%1”不是整数（文件损坏或不是 DXF 文件）")
                      .arg(QString::fromLatin1(CodeLine.data(), qsizetype(std::min<size_t>(CodeLine.size(), 40)))));
    }
    if (!ReadLine(Value))
      Fail(FLine, QStringLiteral("组码 %1 之后文件意外结束（文件不完整）").arg(C));
    if (!Value.empty() && Value.back() == '\r') Value.remove_suffix(1);
    Code = C;
    return true;
  }
  void PushBack() { FPushed = true; }
  double Fraction() const { return FEnd == FBegin ? 1.0 : double(FP - FBegin) / double(FEnd - FBegin); }
  qint64 LineNo() const { return FLine; }

  int Code = 0;
  std::string_view Value;
  qint64 CodeLineNo = 0;

private:
  bool ReadLine(std::string_view& ALine) {
    if (FP >= FEnd)
      return false;
    const char* Nl = static_cast<const char*>(std::memchr(FP, '\n', size_t(FEnd - FP)));
    const char* E = Nl ? Nl : FEnd;
    ALine = std::string_view(FP, size_t(E - FP));
    FP = Nl ? Nl + 1 : FEnd;
    ++FLine;
    return true;
  }
  const char* FBegin;
  const char* FP;
  const char* FEnd;
  qint64 FLine = 0;
  bool FPushed = false;
};

class TParser {
public:
  TParser(const QByteArray& AData, TDoc& ADoc, const TDxfOptions& AOptions, QStringList& AWarnings)
      : FScan(AData.constData(), AData.size()), FDoc(ADoc), FOptions(AOptions), FWarnings(AWarnings) {}

  void Run();

private:
  double Num(std::string_view V) const {
    V = Trimmed(V);
    double D = 0;
    const auto [End, Ec] = std::from_chars(V.data(), V.data() + V.size(), D);
    if (Ec != std::errc() || End != V.data() + V.size() || !std::isfinite(D))
      Fail(FScan.CodeLineNo + 1, QStringLiteral("“%1”不是数值").arg(QString::fromLatin1(V.data(), qsizetype(std::min<size_t>(V.size(), 40)))));
    return D;
  }
  int Int(std::string_view V) const {
    const double D = Num(V);
    if (D < -2147483648.0 || D > 2147483647.0)
      Fail(FScan.CodeLineNo + 1, QStringLiteral("整数“%1”超出范围").arg(QString::fromLatin1(V.data(), qsizetype(std::min<size_t>(V.size(), 40)))));
    return int(D);
  }
  QString Text(std::string_view V) const;
  int LayerOf(std::string_view AName);
  int LineTypeOf(std::string_view AName);
  void Progress() {
    if (FOptions.Progress && ++FTick % 8192 == 0)
      FOptions.Progress(50.0 * FScan.Fraction());
  }

  void Header();
  void Tables();
  void Blocks();
  void Entities(std::vector<TEnt>& AOut, const char* AEnd);
  // The groups of the entity whose 0 group was just read, up to the next 0 group.
  void ReadGroups(TGroups& AGroups);
  bool ReadEntity(std::string_view AType, std::vector<TEnt>& AOut);
  void SkipTo(std::string_view AEnd);
  void Common(const TGroups& AGroups, TEnt& AEnt);
  void Hatch(const TGroups& AGroups, TEnt& AEnt);
  void Warn(const QString& AText) {
    if (!FWarnings.contains(AText) && FWarnings.size() < 50) FWarnings << AText;
  }

  TScanner FScan;
  TDoc& FDoc;
  const TDxfOptions& FOptions;
  QStringList& FWarnings;
  // How texts of the file decode, fixed by the header; the GBK decoder is made once.
  enum class TEncoding { Utf8, Gbk, Latin1 } FEncoding = TEncoding::Utf8;
  mutable QStringDecoder FGbk{"GBK", QStringDecoder::Flag::Stateless};
  qint64 FTick = 0;
  TGroups FGroups, FSubGroups;
  std::map<std::string, int> FSkipped;
};

QString TParser::Text(std::string_view V) const {
  // \U+XXXX and \M+NXXXX escapes stand for characters outside the code page
  QString R;
  size_t Start = 0;
  const auto Flush = [&](size_t AEnd) {
    if (AEnd <= Start) return;
    const char* P = V.data() + Start;
    const qsizetype N = qsizetype(AEnd - Start);
    switch (FEncoding) {
      case TEncoding::Utf8: R += QString::fromUtf8(P, N); break;
      case TEncoding::Latin1: R += QString::fromLatin1(P, N); break;
      case TEncoding::Gbk: R += FGbk.decode(QByteArrayView(P, N)); break;
    }
  };
  const auto Hex = [&](size_t AAt, size_t ALen, uint& AValue) {
    if (AAt + ALen > V.size()) return false;
    const auto [E, Ec] = std::from_chars(V.data() + AAt, V.data() + AAt + ALen, AValue, 16);
    return Ec == std::errc() && E == V.data() + AAt + ALen;
  };
  for (size_t I = 0; I + 1 < V.size(); ++I) {
    if (V[I] != '\\') continue;
    uint Code = 0;
    if ((V[I + 1] == 'U' || V[I + 1] == 'u') && I + 2 < V.size() && V[I + 2] == '+' && Hex(I + 3, 4, Code)) {
      Flush(I);
      R += QChar(char16_t(Code));
      I += 6;
      Start = I + 1;
    } else if ((V[I + 1] == 'M' || V[I + 1] == 'm') && I + 2 < V.size() && V[I + 2] == '+' && I + 3 < V.size() &&
               V[I + 3] == '5' && Hex(I + 4, 4, Code)) {
      Flush(I);
      const char Bytes[2] = {char(Code >> 8), char(Code & 0xFF)};
      R += FGbk.decode(QByteArrayView(Bytes, 2));
      I += 7;
      Start = I + 1;
    }
  }
  Flush(V.size());
  return R;
}

int TParser::LayerOf(std::string_view AName) {
  std::string Key = Upper(Trimmed(AName));
  const auto It = FDoc.LayerIndex.find(Key);
  if (It != FDoc.LayerIndex.end()) return It->second;
  TLayerInfo L;
  L.Name = Text(Trimmed(AName));
  FDoc.Layers.push_back(L);
  const int Index = int(FDoc.Layers.size()) - 1;
  FDoc.LayerIndex.emplace(std::move(Key), Index);
  return Index;
}

int TParser::LineTypeOf(std::string_view AName) {
  std::string Key = Upper(Trimmed(AName));
  if (Key == "BYLAYER") return -1;
  if (Key == "BYBLOCK") return -2;
  const auto It = FDoc.LineTypeIndex.find(Key);
  if (It != FDoc.LineTypeIndex.end()) return It->second;
  FDoc.LineTypes.push_back(Text(Trimmed(AName)));
  const int Index = int(FDoc.LineTypes.size()) - 1;
  FDoc.LineTypeIndex.emplace(std::move(Key), Index);
  return Index;
}

void TParser::ReadGroups(TGroups& AGroups) {
  AGroups.clear();
  while (FScan.Next()) {
    if (FScan.Code == 0) {
      FScan.PushBack();
      return;
    }
    if (FScan.Code != 999) AGroups.emplace_back(FScan.Code, FScan.Value);
  }
}

void TParser::SkipTo(std::string_view AEnd) {
  while (FScan.Next())
    if (FScan.Code == 0 && Trimmed(FScan.Value) == AEnd) return;
  Fail(FScan.LineNo(), QStringLiteral("缺少 %1（文件不完整）").arg(QString::fromLatin1(AEnd.data(), qsizetype(AEnd.size()))));
}

void TParser::Run() {
  FDoc.Layers.push_back(TLayerInfo{QStringLiteral("0")});
  FDoc.LayerIndex.emplace("0", 0);
  bool SawSection = false;
  while (FScan.Next()) {
    if (FScan.Code == 999) continue;
    const std::string_view V = Trimmed(FScan.Value);
    if (FScan.Code != 0)
      Fail(FScan.CodeLineNo, SawSection ? QStringLiteral("段外出现组码 %1").arg(FScan.Code)
                                        : QStringLiteral("不是 DXF 文件（应以 0 SECTION 开始）"));
    if (V == "EOF") return;
    if (V != "SECTION")
      Fail(FScan.CodeLineNo, QStringLiteral("应为 SECTION 或 EOF，却是“%1”").arg(Text(V.substr(0, 40))));
    SawSection = true;
    if (!FScan.Next() || FScan.Code != 2)
      Fail(FScan.CodeLineNo, QStringLiteral("SECTION 之后缺少段名"));
    const std::string Name = Upper(Trimmed(FScan.Value));
    if (Name == "HEADER") Header();
    else if (Name == "TABLES") Tables();
    else if (Name == "BLOCKS") Blocks();
    else if (Name == "ENTITIES") Entities(FDoc.Ents, "ENDSEC");
    else SkipTo("ENDSEC");
  }
  Fail(FScan.LineNo(), SawSection ? QStringLiteral("缺少 EOF（文件不完整）") : QStringLiteral("不是 DXF 文件（文件为空）"));
}

void TParser::Header() {
  std::string Var;
  while (FScan.Next()) {
    if (FScan.Code == 0) {
      if (Trimmed(FScan.Value) == "ENDSEC") break;
      Fail(FScan.CodeLineNo, QStringLiteral("HEADER 段中出现“%1”").arg(Text(Trimmed(FScan.Value).substr(0, 40))));
    }
    if (FScan.Code == 9) {
      Var = Upper(Trimmed(FScan.Value));
      continue;
    }
    if (Var == "$ACADVER" && FScan.Code == 1) FDoc.Version = QString::fromLatin1(Trimmed(FScan.Value).data(), qsizetype(Trimmed(FScan.Value).size()));
    else if (Var == "$DWGCODEPAGE" && FScan.Code == 3) FDoc.CodePage = QString::fromLatin1(Trimmed(FScan.Value).data(), qsizetype(Trimmed(FScan.Value).size()));
    else if (Var == "$INSUNITS" && FScan.Code == 70) FDoc.InsUnits = Int(FScan.Value);
  }
  if (FScan.Code != 0) Fail(FScan.LineNo(), QStringLiteral("HEADER 段没有结束（文件不完整）"));
  // From AutoCAD 2007 (AC1021) on the file is UTF-8 whatever the code page says.
  const bool NewFormat = FDoc.Version.size() == 6 && FDoc.Version.mid(2).toInt() >= 1021;
  const auto Is = [&](const char* AName) { return FDoc.CodePage.compare(QLatin1String(AName), Qt::CaseInsensitive) == 0; };
  FEncoding = NewFormat || FDoc.CodePage.isEmpty() || Is("UTF-8") || Is("UTF8") ? TEncoding::Utf8
              : Is("ANSI_1252")                                                 ? TEncoding::Latin1
                                                                                : TEncoding::Gbk;
}

void TParser::Tables() {
  while (FScan.Next()) {
    if (FScan.Code != 0) continue;
    const std::string_view V = Trimmed(FScan.Value);
    if (V == "ENDSEC") return;
    if (V == "LAYER" || V == "LTYPE") {
      const bool Layer = V == "LAYER";
      ReadGroups(FGroups);
      std::string_view Name;
      int Color = 7, Flags = 0, True = -1;
      std::string_view LineType;
      bool Named = false;
      for (const auto& [C, Val] : FGroups) {
        if (C == 2) { Name = Val; Named = true; }
        else if (C == 62) Color = Int(Val);
        else if (C == 70) Flags = Int(Val);
        else if (C == 420) True = Int(Val);
        else if (C == 6) LineType = Val;
      }
      if (!Named) continue;  // the table's own header
      if (Layer) {
        TLayerInfo& L = FDoc.Layers[size_t(LayerOf(Name))];
        L.Aci = Color == 0 ? 7 : std::abs(Color);
        L.Off = Color < 0;
        L.Frozen = Flags & 1;
        L.TrueColor = True;
        L.LineType = LineType.empty() ? -1 : LineTypeOf(LineType);
        if (L.LineType < -1) L.LineType = -1;
      } else {
        LineTypeOf(Name);
      }
      Progress();
    }
  }
  Fail(FScan.LineNo(), QStringLiteral("TABLES 段没有结束（文件不完整）"));
}

void TParser::Blocks() {
  while (FScan.Next()) {
    if (FScan.Code != 0) continue;
    const std::string_view V = Trimmed(FScan.Value);
    if (V == "ENDSEC") return;
    if (V != "BLOCK") continue;
    ReadGroups(FGroups);
    TBlock B;
    std::string_view Name;
    int Flags = 0;
    for (const auto& [C, Val] : FGroups) {
      if (C == 2) Name = Val;
      else if (C == 10) B.BaseX = Num(Val);
      else if (C == 20) B.BaseY = Num(Val);
      else if (C == 70) Flags = Int(Val);
    }
    B.Name = Text(Trimmed(Name));
    Entities(B.Ents, "ENDBLK");
    if (Flags & 4) Warn(QStringLiteral("外部参照块 %1 未导入").arg(B.Name));
    else FDoc.Blocks[Upper(Trimmed(Name))] = std::move(B);
  }
  Fail(FScan.LineNo(), QStringLiteral("BLOCKS 段没有结束（文件不完整）"));
}

void TParser::Entities(std::vector<TEnt>& AOut, const char* AEnd) {
  while (FScan.Next()) {
    if (FScan.Code != 0) Fail(FScan.CodeLineNo, QStringLiteral("图元之外出现组码 %1").arg(FScan.Code));
    const std::string_view V = Trimmed(FScan.Value);
    if (V == AEnd) {
      ReadGroups(FGroups);
      return;
    }
    if (V == "EOF" || V == "SECTION" || V == "ENDSEC")
      Fail(FScan.CodeLineNo, QStringLiteral("缺少 %1（文件不完整）").arg(QLatin1String(AEnd)));
    ReadEntity(V, AOut);
    Progress();
  }
  Fail(FScan.LineNo(), QStringLiteral("缺少 %1（文件不完整）").arg(QLatin1String(AEnd)));
}

void TParser::Common(const TGroups& AGroups, TEnt& AEnt) {
  for (const auto& [C, Val] : AGroups) {
    switch (C) {
      case 8: AEnt.Layer = LayerOf(Val); break;
      case 6: AEnt.LineType = LineTypeOf(Val); break;
      case 62: AEnt.Aci = Int(Val); break;
      case 420: AEnt.TrueColor = Int(Val) & 0xFFFFFF; break;
      case 230: AEnt.Ocs = Num(Val) < 0; break;
      default: break;
    }
  }
}

bool TParser::ReadEntity(std::string_view AType, std::vector<TEnt>& AOut) {
  ReadGroups(FGroups);
  for (const auto& [C, Val] : FGroups)
    if (C == 67 && Trimmed(Val) == "1") {  // paper space
      if (AType == "POLYLINE" || AType == "INSERT") {
        // their VERTEX/ATTRIB records follow up to SEQEND
        bool Follows = AType == "POLYLINE";
        for (const auto& [C2, V2] : FGroups) if (C2 == 66 && Trimmed(V2) == "1") Follows = true;
        if (Follows) SkipTo("SEQEND");
      }
      return false;
    }
  TEnt E;
  const auto Pt = [&](int ACode, double& AX, double& AY) {
    for (const auto& [C, Val] : FGroups) {
      if (C == ACode) AX = Num(Val);
      else if (C == ACode + 10) AY = Num(Val);
    }
  };
  const auto Get = [&](int ACode, double ADefault) {
    double R = ADefault;
    for (const auto& [C, Val] : FGroups) if (C == ACode) R = Num(Val);
    return R;
  };
  const auto GetInt = [&](int ACode, int ADefault) {
    int R = ADefault;
    for (const auto& [C, Val] : FGroups) if (C == ACode) R = Int(Val);
    return R;
  };
  Common(FGroups, E);
  if (AType == "LINE") {
    E.Kind = TKind::Line;
    E.Ocs = false;
    Pt(10, E.A[0], E.A[1]);
    Pt(11, E.A[2], E.A[3]);
  } else if (AType == "CIRCLE" || AType == "ARC") {
    E.Kind = AType == "ARC" ? TKind::Arc : TKind::Circle;
    Pt(10, E.A[0], E.A[1]);
    E.A[2] = Get(40, 0);
    E.A[3] = Get(50, 0);
    E.A[4] = Get(51, 360);
    if (E.A[2] <= 0) return false;
  } else if (AType == "POINT") {
    E.Kind = TKind::Point;
    E.Ocs = false;
    Pt(10, E.A[0], E.A[1]);
  } else if (AType == "LWPOLYLINE") {
    E.Kind = TKind::Poly;
    for (const auto& [C, Val] : FGroups) {
      if (C == 10) E.Pts.push_back({Num(Val), 0, 0});
      else if (C == 20 && !E.Pts.empty()) E.Pts.back().Y = Num(Val);
      else if (C == 42 && !E.Pts.empty()) E.Pts.back().Bulge = Num(Val);
      else if (C == 70) E.Closed = Int(Val) & 1;
    }
  } else if (AType == "POLYLINE") {
    E.Kind = TKind::Poly;
    const int Flags = GetInt(70, 0);
    E.Closed = Flags & 1;
    if (Flags & 8) E.Ocs = false;  // a 3D polyline is in world coordinates
    while (FScan.Next()) {
      if (FScan.Code != 0) continue;
      const std::string_view V = Trimmed(FScan.Value);
      if (V == "SEQEND") { ReadGroups(FSubGroups); break; }
      if (V != "VERTEX") {
        // some writers end a polyline without SEQEND
        FScan.PushBack();
        break;
      }
      ReadGroups(FSubGroups);
      TVtx P;
      int VFlags = 0;
      for (const auto& [C, Val] : FSubGroups) {
        if (C == 10) P.X = Num(Val);
        else if (C == 20) P.Y = Num(Val);
        else if (C == 42) P.Bulge = Num(Val);
        else if (C == 70) VFlags = Int(Val);
      }
      if (!(VFlags & 16) && !(VFlags & 128 && !(VFlags & 64))) E.Pts.push_back(P);
    }
    if (Flags & (16 | 64)) {
      Warn(QStringLiteral("多边形网格未导入"));
      return false;
    }
  } else if (AType == "SPLINE") {
    E.Kind = TKind::Spline;
    E.Ocs = false;
    E.Closed = GetInt(70, 0) & 1;
    E.Degree = GetInt(71, 3);
    TEntExtra& X = E.Extra();
    for (const auto& [C, Val] : FGroups) {
      if (C == 40) X.Knots.push_back(Num(Val));
      else if (C == 41) X.Weights.push_back(Num(Val));
      else if (C == 10) E.Pts.push_back({Num(Val), 0, 0});
      else if (C == 20 && !E.Pts.empty()) E.Pts.back().Y = Num(Val);
      else if (C == 11) X.Fit.push_back({Num(Val), 0, 0});
      else if (C == 21 && !X.Fit.empty()) X.Fit.back().Y = Num(Val);
    }
  } else if (AType == "ELLIPSE") {
    E.Kind = TKind::Ellipse;
    Pt(10, E.A[0], E.A[1]);
    Pt(11, E.A[2], E.A[3]);
    E.A[4] = Get(40, 1);
    E.A[5] = Get(41, 0);
    E.A[6] = Get(42, 2 * M_PI);
    if (E.A[2] == 0 && E.A[3] == 0) return false;
  } else if (AType == "TEXT" || AType == "ATTRIB") {
    E.Kind = TKind::Text;
    if (AType == "ATTRIB" && (GetInt(70, 0) & 1)) return false;  // invisible
    for (const auto& [C, Val] : FGroups) if (C == 1) E.Text = Text(Val);
    Pt(10, E.A[0], E.A[1]);
    E.A[5] = E.A[0];
    E.A[6] = E.A[1];
    Pt(11, E.A[5], E.A[6]);
    E.A[2] = Get(40, 0);
    E.A[3] = Get(50, 0);
    E.A[4] = Get(41, 1);
    E.HAlign = (unsigned char)std::clamp(GetInt(72, 0), 0, 5);
    E.VAlign = (unsigned char)std::clamp(GetInt(AType == "ATTRIB" ? 74 : 73, 0), 0, 3);
  } else if (AType == "MTEXT") {
    E.Kind = TKind::MText;
    E.Ocs = false;
    QByteArray Raw;
    for (const auto& [C, Val] : FGroups) if (C == 3) Raw.append(Val.data(), qsizetype(Val.size()));
    for (const auto& [C, Val] : FGroups) if (C == 1) Raw.append(Val.data(), qsizetype(Val.size()));
    E.Text = Text(std::string_view(Raw.constData(), size_t(Raw.size())));
    Pt(10, E.A[0], E.A[1]);
    E.A[2] = Get(40, 0);
    E.A[3] = Get(50, 0) * M_PI / 180;
    double DX = 0, DY = 0;
    Pt(11, DX, DY);
    if (DX != 0 || DY != 0) E.A[3] = std::atan2(DY, DX);
    E.HAlign = (unsigned char)std::clamp(GetInt(71, 1), 1, 9);
  } else if (AType == "SOLID" || AType == "TRACE") {
    E.Kind = TKind::Solid;
    Pt(10, E.A[0], E.A[1]);
    Pt(11, E.A[2], E.A[3]);
    Pt(12, E.A[4], E.A[5]);
    E.A[6] = E.A[4];
    E.A[7] = E.A[5];
    Pt(13, E.A[6], E.A[7]);
  } else if (AType == "HATCH") {
    E.Kind = TKind::Hatch;
    Hatch(FGroups, E);
    if (!E.Ext || E.Ext->Loops.empty()) return false;
  } else if (AType == "INSERT") {
    E.Kind = TKind::Insert;
    bool Attribs = false;
    for (const auto& [C, Val] : FGroups) {
      if (C == 2) E.Text = Text(Trimmed(Val));
      else if (C == 66) Attribs = Int(Val) == 1;
    }
    Pt(10, E.A[0], E.A[1]);
    E.A[2] = Get(41, 1);
    E.A[3] = Get(42, 1);
    E.A[4] = Get(50, 0);
    E.A[5] = Get(44, 0);
    E.A[6] = Get(45, 0);
    E.Degree = std::max(1, GetInt(70, 1));
    E.Rows = std::max(1, GetInt(71, 1));
    if (Attribs) {
      while (FScan.Next()) {
        if (FScan.Code != 0) continue;
        const std::string_view V = Trimmed(FScan.Value);
        if (V == "SEQEND") { ReadGroups(FSubGroups); break; }
        if (V != "ATTRIB") { FScan.PushBack(); break; }
        std::vector<TEnt> One;
        ReadEntity("ATTRIB", One);
        for (TEnt& A : One) E.Extra().Attribs.push_back(std::move(A));
      }
    }
  } else if (AType == "DIMENSION") {
    E.Kind = TKind::Dimension;
    E.Ocs = false;
    for (const auto& [C, Val] : FGroups) if (C == 2) E.Text = Text(Trimmed(Val));
    if (E.Text.isEmpty()) return false;
  } else {
    const std::string Kind(AType);
    if (FSkipped[Kind]++ == 0 && FSkipped.size() <= 20)
      Warn(QStringLiteral("未导入的图元类型：%1").arg(QString::fromLatin1(Kind.data(), qsizetype(std::min<size_t>(Kind.size(), 40)))));
    return false;
  }
  AOut.push_back(std::move(E));
  return true;
}

void TParser::Hatch(const TGroups& G, TEnt& AEnt) {
  // The boundary paths follow group 91 in order; counts bound each loop, and the
  // groups left bound every count.
  size_t I = 0;
  while (I < G.size() && G[I].first != 91) ++I;
  if (I >= G.size()) return;
  const auto Expect = [&](int ACode) -> std::string_view {
    if (I >= G.size() || G[I].first != ACode) throw EDxfError(QString());
    return G[I++].second;
  };
  const auto Count = [&](int ACode) { return size_t(std::clamp<qint64>(Int(Expect(ACode)), 0, qint64(G.size()))); };
  const auto SampleArc = [](TLoop& L, double CX, double CY, double R, double A0, double A1, bool Ccw) {
    // degrees; clockwise edges give their angles as if mirrored
    double S = A0 * M_PI / 180, E = A1 * M_PI / 180;
    if (!Ccw) { S = -S; E = -E; }
    // angles of any size: the sweep is taken modulo a turn, never by repeated steps
    double Sweep = std::fmod(Ccw ? E - S : S - E, 2 * M_PI);
    if (Sweep <= 0) Sweep += 2 * M_PI;
    const int N = std::max(2, int(std::ceil(Sweep / (M_PI / 32))));
    for (int K = 0; K <= N; ++K) {
      const double T = S + (Ccw ? 1 : -1) * Sweep * K / N;
      const TVtx P{CX + R * std::cos(T), CY + R * std::sin(T), 0};
      if (K == 0 && !L.empty() && std::hypot(L.back().X - P.X, L.back().Y - P.Y) <= 1e-9 * std::max(1.0, R)) continue;
      L.push_back(P);
    }
  };
  try {
    const size_t Paths = Count(91);
    for (size_t P = 0; P < Paths; ++P) {
      const int Flags = Int(Expect(92));
      TLoop Loop;
      if (Flags & 2) {
        const bool Bulges = Int(Expect(72)) != 0;
        Expect(73);
        const size_t N = Count(93);
        for (size_t K = 0; K < N; ++K) {
          TVtx V{Num(Expect(10)), Num(Expect(20)), 0};
          if (Bulges && I < G.size() && G[I].first == 42) V.Bulge = Num(G[I++].second);
          Loop.push_back(V);
        }
      } else {
        const size_t Edges = Count(93);
        for (size_t K = 0; K < Edges; ++K) {
          const int Type = Int(Expect(72));
          if (Type == 1) {
            const double X1 = Num(Expect(10)), Y1 = Num(Expect(20)), X2 = Num(Expect(11)), Y2 = Num(Expect(21));
            // edges meet end to start: each point once
            if (Loop.empty() || Loop.back().X != X1 || Loop.back().Y != Y1) Loop.push_back({X1, Y1, 0});
            Loop.push_back({X2, Y2, 0});
          } else if (Type == 2) {
            const double CX = Num(Expect(10)), CY = Num(Expect(20)), R = Num(Expect(40)), A0 = Num(Expect(50)),
                         A1 = Num(Expect(51));
            SampleArc(Loop, CX, CY, R, A0, A1, Int(Expect(73)) != 0);
          } else if (Type == 3) {
            const double CX = Num(Expect(10)), CY = Num(Expect(20)), MX = Num(Expect(11)), MY = Num(Expect(21)),
                         Ratio = Num(Expect(40)), A0 = Num(Expect(50)), A1 = Num(Expect(51));
            const bool Ccw = Int(Expect(73)) != 0;
            TLoop Unit;
            SampleArc(Unit, 0, 0, 1, A0, A1, Ccw);
            for (const TVtx& U : Unit)
              Loop.push_back({CX + U.X * MX - U.Y * MY * Ratio, CY + U.X * MY + U.Y * MX * Ratio, 0});
          } else if (Type == 4) {
            Expect(94);
            const bool Rational = Int(Expect(73)) != 0;
            Expect(74);
            const size_t NK = Count(95), NC = Count(96);
            for (size_t Q = 0; Q < NK; ++Q) Expect(40);
            for (size_t Q = 0; Q < NC; ++Q) {
              Loop.push_back({Num(Expect(10)), Num(Expect(20)), 0});
              if (Rational && I < G.size() && G[I].first == 42) ++I;
            }
            if (I < G.size() && G[I].first == 97) {
              const size_t NF = Count(97);
              for (size_t Q = 0; Q < NF; ++Q) { Expect(11); Expect(21); }
            }
            while (I < G.size() && (G[I].first == 12 || G[I].first == 22 || G[I].first == 13 || G[I].first == 23)) ++I;
          } else {
            throw EDxfError(QString());
          }
        }
      }
      // source objects of this path
      if (I < G.size() && G[I].first == 97) {
        const size_t NS = Count(97);
        for (size_t Q = 0; Q < NS && I < G.size() && G[I].first == 330; ++Q) ++I;
      }
      if (Loop.size() >= 2) AEnt.Extra().Loops.push_back(std::move(Loop));
    }
  } catch (const EDxfError&) {
    Warn(QStringLiteral("填充的边界数据不完整，只导入了能读出的部分"));
  }
}

}  // namespace

}  // namespace dxf

TDxfSummary ReadDxf(const QByteArray& AData, ICADConverterIntf& AConverter, const TDxfOptions& AOptions) {
  static const char kBinary[] = "AutoCAD Binary DXF";
  if (AData.startsWith(kBinary))
    throw EDxfError(QStringLiteral("这是二进制 DXF 文件，只能读取文本（ASCII）格式的 DXF：请在 CAD 中另存为 ASCII DXF"));
  if (qint64(AData.size()) > kMaxDxfBytes)
    throw EDxfError(QStringLiteral("DXF 文件太大"));
  TDxfSummary Summary;
  dxf::TDoc Doc;
  dxf::TParser(AData, Doc, AOptions, Summary.Warnings).Run();
  Summary.Version = Doc.Version;
  Summary.CodePage = Doc.CodePage;
  Summary.Layers = int(Doc.Layers.size());
  Summary.Blocks = int(Doc.Blocks.size());
  Summary.Entities = int(Doc.Ents.size());
  dxf::WalkDoc(Doc, AConverter, AOptions, Summary);
  return Summary;
}
