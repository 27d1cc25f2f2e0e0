// Load and save of drawings of 100,000 and 1,000,000 items in both forms, each next to
// its yardstick in the same run: the binary stream read into plain structs, pugixml
// parsing the same XML text and reading every attribute, and pugixml building and
// writing the same document.
#include "GuiBenchMain.h"
#include "Classes.h"
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"
#include "VectorDrawing.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <malloc.h>

#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

// glibc maps large blocks afresh and moves its trim threshold with the history of frees,
// so a load after a free would find its memory still mapped or fault it in again
// depending on block sizes and on what ran before. With no mapped blocks and no trimming,
// every load, ours and the yardsticks', reuses freed memory alike: the figures compare
// work, not page faults.
[[maybe_unused]] const bool WarmHeap = [] {
  return mallopt(M_MMAP_MAX, 0) == 1 && mallopt(M_TRIM_THRESHOLD, 1 << 30) == 1;
}();

TVectorDrawing* MakeDrawing(int ACount) {
  auto* Dr = new TVectorDrawing();
  std::mt19937 Rng(5);
  std::uniform_real_distribution<double> U(0, 100000);
  for (int I = 0; I < ACount; ++I) {
    const TKRNVector2d P{U(Rng), U(Rng)};
    switch (I % 5) {
      case 0: Dr->AppendRaw(new TVectorLine(Dr, I, 0xFF, 0, 0, 0, 0, msNone, msNone, P, {P.X + 200, P.Y + 50})); break;
      case 1: Dr->AppendRaw(new TVectorArc(Dr, I, 0xFF00, 0, 0, 0, 0, msNone, msNone, P, {P.X + 100, P.Y}, 80, atACS)); break;
      case 2: Dr->AppendRaw(new TVectorCircle(Dr, I, 0xFF0000, 0, 0, P, 40)); break;
      case 3:
        Dr->AppendRaw(new TVectorText(Dr, I, 0, QStringLiteral("L=%1").arg(1000 + I % 2000), P, 0, QStringLiteral("宋体"),
                                      30, 0, haLeftJustify, vaBottomJustify, true, 0, QString()));
        break;
      default: Dr->AppendRaw(new TVectorHatch(Dr, I, 0x808080, 4, TKRNPolygon2d(TKRNBox2d{P, {P.X + 60, P.Y + 60}}))); break;
    }
    Dr->Items(I)->SetLayerRaw(Dr->Layers().Items(0));
  }
  return Dr;
}

TVectorDrawing& Drawing(int ACount) {
  static std::map<int, std::unique_ptr<TVectorDrawing>> Made;
  auto& D = Made[ACount];
  if (!D) D.reset(MakeDrawing(ACount));
  return *D;
}

const QByteArray& Saved(TVDSaveFormat AFormat, int ACount) {
  static std::map<std::pair<int, int>, QByteArray> Made;
  QByteArray& B = Made[{int(AFormat), ACount}];
  if (B.isEmpty()) {
    TBytesStream S;
    Drawing(ACount).SaveToStream(S, AFormat, false);
    B = S.Bytes();
  }
  return B;
}

// The drawing's XML may carry an attribute with an empty name, which a general parser
// refuses: the pugixml yardsticks work on a copy where it has a name.
QByteArray GeneralXml(int ACount) {
  QByteArray B = Saved(sfXML, ACount);
  B.replace(" =\"", " FFH=\"");
  return B;
}

void Sizes(benchmark::internal::Benchmark* B) { B->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond); }

template <TVDSaveFormat F>
void BM_Save(benchmark::State& State) {
  const int N = int(State.range(0));
  TVectorDrawing& D = Drawing(N);
  for (auto _ : State) {
    TBytesStream S;
    D.SaveToStream(S, F, false);
    benchmark::DoNotOptimize(S.Bytes().size());
  }
  State.SetBytesProcessed(State.iterations() * Saved(F, N).size());
}
BENCHMARK(BM_Save<sfBin>)->Apply(Sizes);
BENCHMARK(BM_Save<sfXML>)->Apply(Sizes);

// A load is timed up to the loaded drawing; freeing it is timed apart (BM_Free), and
// the yardsticks free what they read outside their timing too.
template <TVDSaveFormat F>
void BM_Load(benchmark::State& State) {
  const QByteArray& B = Saved(F, int(State.range(0)));
  for (auto _ : State) {
    TBytesStream S(B);
    auto D = std::make_unique<TVectorDrawing>();
    D->LoadFromStream(S);
    benchmark::DoNotOptimize(D->Count());
    State.PauseTiming();
    D.reset();
    State.ResumeTiming();
  }
  State.SetBytesProcessed(State.iterations() * B.size());
}
BENCHMARK(BM_Load<sfBin>)->Apply(Sizes);
BENCHMARK(BM_Load<sfXML>)->Apply(Sizes);

void BM_Free(benchmark::State& State) {
  const QByteArray& B = Saved(sfBin, int(State.range(0)));
  for (auto _ : State) {
    State.PauseTiming();
    TBytesStream S(B);
    auto D = std::make_unique<TVectorDrawing>();
    D->LoadFromStream(S);
    State.ResumeTiming();
    D.reset();
  }
  State.SetLabel("freeing a loaded drawing");
}
BENCHMARK(BM_Free)->Apply(Sizes);

// The binary load yardstick: the same stream read into plain structs, with the same
// bounds checks but no objects, boxes or index.
struct TPlainVertex {
  quint8 Type;
  double X, Y, Radius;
};

struct TPlainItem {
  quint8 Type = 0;
  qint32 ID = 0, BlockTypeID = 0, BlockID = 0, LayerID = 0, RelationID = 0, EnableType = 0;
  quint32 Color = 0, BackColor = 0;
  double Scale = 0, Radius = 0, Angle = 0, FloatHeight = 0;
  std::string ExtData, Text, FontName;
  qint16 LineWidth = 0, StartMarkSize = 0, EndMarkSize = 0, Height = 0;
  quint8 LineStyle = 0, StartMarkStyle = 0, EndMarkStyle = 0, ArcType = 0, FillStyle = 0, Align = 0, Style = 0;
  qint32 PrevID = 0, NextID = 0;
  double X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;
  std::vector<TPlainVertex> Vertices;
};

class TPlainReader {
public:
  explicit TPlainReader(const QByteArray& B) : P(B.constData()), End(B.constData() + B.size()) {}
  template <typename T> T Get() {
    T V;
    Need(sizeof V);
    std::memcpy(&V, P, sizeof V);
    P += sizeof V;
    return V;
  }
  std::string Str(int ALenSize) {
    quint32 Len = 0;
    Need(size_t(ALenSize));
    std::memcpy(&Len, P, size_t(ALenSize));
    P += ALenSize;
    Need(Len);
    std::string S(P, Len);
    P += Len;
    return S;
  }
  void Need(size_t N) const {
    if (size_t(End - P) < N) throw std::runtime_error("short stream");
  }

private:
  const char* P;
  const char* End;
};

size_t ReadPlain(const QByteArray& B, std::vector<TPlainItem>& AItems) {
  TPlainReader R(B);
  const quint8 MagicLen = R.Get<quint8>();
  R.Need(MagicLen);
  for (int I = 0; I < MagicLen; ++I) R.Get<char>();
  const std::string Version = R.Str(1);
  R.Get<quint32>();
  R.Get<qint32>();
  R.Get<qint32>();
  R.Str(4);
  R.Str(4);
  const qint32 Layers = R.Get<qint32>();
  for (qint32 I = 0; I < Layers; ++I) {
    R.Get<qint32>();
    R.Str(1);
    R.Get<quint32>();
    R.Get<quint8>();
  }
  const qint32 N = R.Get<qint32>();
  AItems.reserve(size_t(N));
  for (qint32 I = 0; I < N; ++I) {
    TPlainItem& It = AItems.emplace_back();
    It.Type = R.Get<quint8>();
    It.ID = R.Get<qint32>();
    It.BlockTypeID = R.Get<qint32>();
    It.BlockID = R.Get<qint32>();
    It.LayerID = R.Get<qint32>();
    It.Color = R.Get<quint32>();
    It.ExtData = R.Str(4);
    It.RelationID = R.Get<qint32>();
    It.EnableType = R.Get<qint32>();
    It.Scale = R.Get<double>();
    const auto LineBase = [&] {
      It.LineWidth = R.Get<qint16>();
      It.LineStyle = R.Get<quint8>();
      It.StartMarkSize = R.Get<qint16>();
      It.EndMarkSize = R.Get<qint16>();
      It.StartMarkStyle = R.Get<quint8>();
      It.EndMarkStyle = R.Get<quint8>();
      It.PrevID = R.Get<qint32>();
      It.NextID = R.Get<qint32>();
    };
    switch (It.Type) {
      case 1:
        It.Text = R.Str(2);
        It.Height = R.Get<qint16>();
        It.Angle = R.Get<float>();
        It.X1 = R.Get<double>();
        It.Y1 = R.Get<double>();
        It.Align = R.Get<quint8>();
        It.Align |= quint8(R.Get<quint8>() << 2);
        It.FontName = R.Str(1);
        It.Style = R.Get<quint8>();
        It.Style |= quint8(R.Get<quint8>() << 2);
        It.BackColor = R.Get<quint32>();
        It.FloatHeight = R.Get<float>();
        break;
      case 2:
      case 3:
        LineBase();
        It.X1 = R.Get<double>();
        It.Y1 = R.Get<double>();
        It.X2 = R.Get<double>();
        It.Y2 = R.Get<double>();
        if (It.Type == 3) {
          It.Radius = R.Get<double>();
          It.ArcType = R.Get<quint8>();
        }
        break;
      case 5:
        It.LineWidth = R.Get<qint16>();
        It.LineStyle = R.Get<quint8>();
        It.X1 = R.Get<double>();
        It.Y1 = R.Get<double>();
        It.Radius = R.Get<double>();
        break;
      case 4: {
        It.FillStyle = R.Get<quint8>();
        const quint16 Count = R.Get<quint16>();
        It.Vertices.reserve(Count);
        for (int V = 0; V < Count; ++V) {
          TPlainVertex& X = It.Vertices.emplace_back();
          X.Type = R.Get<quint8>();
          X.X = R.Get<double>();
          X.Y = R.Get<double>();
          X.Radius = X.Type != 0 ? R.Get<double>() : 0;
        }
        break;
      }
      default: throw std::runtime_error("item kind not in the benchmark drawing");
    }
  }
  return AItems.size();
}

void BM_PlainStructsLoad(benchmark::State& State) {
  const QByteArray& B = Saved(sfBin, int(State.range(0)));
  for (auto _ : State) {
    std::vector<TPlainItem> Items;
    benchmark::DoNotOptimize(ReadPlain(B, Items));
    State.PauseTiming();
    Items = {};
    State.ResumeTiming();
  }
  State.SetBytesProcessed(State.iterations() * B.size());
  State.SetLabel("yardstick of the binary load");
}
BENCHMARK(BM_PlainStructsLoad)->Apply(Sizes);

void BM_PugixmlParse(benchmark::State& State) {
  const QByteArray B = GeneralXml(int(State.range(0)));
  for (auto _ : State) {
    pugi::xml_document Doc;
    const pugi::xml_parse_result R = Doc.load_buffer(B.constData(), size_t(B.size()));
    if (!R) State.SkipWithError(R.description());
    benchmark::DoNotOptimize(Doc.first_child());
  }
  State.SetBytesProcessed(State.iterations() * B.size());
}
BENCHMARK(BM_PugixmlParse)->Apply(Sizes);

// The load yardstick proper: the parse, then every attribute read into a number (when
// it is one) or a string, as a loader must.
void ReadAll(const pugi::xml_node& ANode, double& ASum, size_t& AChars) {
  for (const pugi::xml_attribute A : ANode.attributes()) {
    const char* V = A.value();
    char* End = nullptr;
    const double D = std::strtod(V, &End);
    if (End != V && *End == 0) ASum += D;
    else AChars += std::string(V).size();
  }
  for (const pugi::xml_node C : ANode.children()) ReadAll(C, ASum, AChars);
}

void BM_PugixmlParseAndRead(benchmark::State& State) {
  const QByteArray B = GeneralXml(int(State.range(0)));
  for (auto _ : State) {
    auto Doc = std::make_unique<pugi::xml_document>();
    Doc->load_buffer(B.constData(), size_t(B.size()));
    double Sum = 0;
    size_t Chars = 0;
    ReadAll(*Doc, Sum, Chars);
    benchmark::DoNotOptimize(Sum);
    benchmark::DoNotOptimize(Chars);
    State.PauseTiming();
    Doc.reset();
    State.ResumeTiming();
  }
  State.SetBytesProcessed(State.iterations() * B.size());
  State.SetLabel("yardstick of the XML load");
}
BENCHMARK(BM_PugixmlParseAndRead)->Apply(Sizes);

// The save yardstick: the same document built node by node and written out.
void CopyInto(const pugi::xml_node& AFrom, pugi::xml_node ATo) {
  for (const pugi::xml_attribute A : AFrom.attributes()) ATo.append_attribute(A.name()) = A.value();
  for (const pugi::xml_node C : AFrom.children()) {
    if (C.type() == pugi::node_element) CopyInto(C, ATo.append_child(C.name()));
    else ATo.append_child(C.type()).set_value(C.value());
  }
}

// Into one growing string, as ours writes; the document is freed outside the timing,
// as ours has nothing to free.
struct TStringWriter : pugi::xml_writer {
  std::string Text;
  void write(const void* AData, size_t ASize) override { Text.append(static_cast<const char*>(AData), ASize); }
};

void BM_PugixmlBuildAndWrite(benchmark::State& State) {
  const QByteArray B = GeneralXml(int(State.range(0)));
  pugi::xml_document Source;
  Source.load_buffer(B.constData(), size_t(B.size()));
  for (auto _ : State) {
    auto Doc = std::make_unique<pugi::xml_document>();
    CopyInto(Source, *Doc);
    TStringWriter Out;
    Doc->save(Out, "  ");
    benchmark::DoNotOptimize(Out.Text.size());
    State.PauseTiming();
    Doc.reset();
    State.ResumeTiming();
  }
  State.SetBytesProcessed(State.iterations() * B.size());
  State.SetLabel("yardstick of the XML save");
}
BENCHMARK(BM_PugixmlBuildAndWrite)->Apply(Sizes);

}  // namespace

DSE_GUI_BENCHMARK_MAIN()
