// Load and save of a 100,000-item drawing in both forms, next to the limits: a raw
// copy of the binary bytes, and a plain parse of the same XML text by pugixml.
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

#include <cstring>
#include <sstream>
#include <random>

namespace {

TVectorDrawing& Drawing() {
  static TVectorDrawing* D = [] {
    auto* Dr = new TVectorDrawing();
    std::mt19937 Rng(5);
    std::uniform_real_distribution<double> U(0, 100000);
    for (int I = 0; I < 100000; ++I) {
      const TKRNVector2d P{U(Rng), U(Rng)};
      switch (I % 5) {
        case 0: Dr->AppendRaw(new TVectorLine(Dr, I, 0xFF, 0, 0, 0, 0, msNone, msNone, P, {P.X + 200, P.Y + 50})); break;
        case 1: Dr->AppendRaw(new TVectorArc(Dr, I, 0xFF00, 0, 0, 0, 0, msNone, msNone, P, {P.X + 100, P.Y}, 80, atACS)); break;
        case 2: Dr->AppendRaw(new TVectorCircle(Dr, I, 0xFF0000, 0, 0, P, 40)); break;
        case 3:
          Dr->AppendRaw(new TVectorText(Dr, I, 0, QStringLiteral("L=1500"), P, 0, QStringLiteral("宋体"), 30, 0,
                                        haLeftJustify, vaBottomJustify, true, 0, QString()));
          break;
        default: Dr->AppendRaw(new TVectorHatch(Dr, I, 0x808080, 4, TKRNPolygon2d(TKRNBox2d{P, {P.X + 60, P.Y + 60}}))); break;
      }
      Dr->Items(I)->SetLayerRaw(Dr->Layers().Items(0));
    }
    return Dr;
  }();
  return *D;
}

const QByteArray& Saved(TVDSaveFormat AFormat) {
  static QByteArray Bin, Xml;
  QByteArray& B = AFormat == sfBin ? Bin : Xml;
  if (B.isEmpty()) {
    TBytesStream S;
    Drawing().SaveToStream(S, AFormat, false);
    B = S.Bytes();
  }
  return B;
}

void BM_Save(benchmark::State& State) {
  const TVDSaveFormat F = TVDSaveFormat(State.range(0));
  for (auto _ : State) {
    TBytesStream S;
    Drawing().SaveToStream(S, F, false);
    benchmark::DoNotOptimize(S.Bytes().size());
  }
  State.SetBytesProcessed(State.iterations() * Saved(F).size());
}
BENCHMARK(BM_Save)->Arg(sfBin)->Arg(sfXML)->Unit(benchmark::kMillisecond);

void BM_Load(benchmark::State& State) {
  const TVDSaveFormat F = TVDSaveFormat(State.range(0));
  const QByteArray& B = Saved(F);
  for (auto _ : State) {
    TBytesStream S(B);
    TVectorDrawing D;
    D.LoadFromStream(S);
    benchmark::DoNotOptimize(D.Count());
  }
  State.SetBytesProcessed(State.iterations() * B.size());
}
BENCHMARK(BM_Load)->Arg(sfBin)->Arg(sfXML)->Unit(benchmark::kMillisecond);

void BM_RawCopyBinary(benchmark::State& State) {
  const QByteArray& B = Saved(sfBin);
  std::vector<char> Dst(size_t(B.size()));
  for (auto _ : State) {
    std::memcpy(Dst.data(), B.constData(), Dst.size());
    benchmark::DoNotOptimize(Dst.data());
  }
  State.SetBytesProcessed(State.iterations() * B.size());
}
BENCHMARK(BM_RawCopyBinary)->Unit(benchmark::kMillisecond);

// The drawing's XML may carry an attribute with an empty name, which a general
// parser refuses: the yardstick parses a copy where it has one.
void BM_PugixmlParse(benchmark::State& State) {
  QByteArray B = Saved(sfXML);
  B.replace(" =\"", " FFH=\"");
  for (auto _ : State) {
    pugi::xml_document Doc;
    const pugi::xml_parse_result R = Doc.load_buffer(B.constData(), size_t(B.size()));
    if (!R) State.SkipWithError(R.description());
    benchmark::DoNotOptimize(Doc.first_child());
  }
  State.SetBytesProcessed(State.iterations() * B.size());
}
BENCHMARK(BM_PugixmlParse)->Unit(benchmark::kMillisecond);

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
  QByteArray B = Saved(sfXML);
  B.replace(" =\"", " FFH=\"");
  for (auto _ : State) {
    pugi::xml_document Doc;
    Doc.load_buffer(B.constData(), size_t(B.size()));
    double Sum = 0;
    size_t Chars = 0;
    ReadAll(Doc, Sum, Chars);
    benchmark::DoNotOptimize(Sum);
    benchmark::DoNotOptimize(Chars);
  }
  State.SetBytesProcessed(State.iterations() * B.size());
  State.SetLabel("yardstick of the XML load");
}
BENCHMARK(BM_PugixmlParseAndRead)->Unit(benchmark::kMillisecond);

// The save yardstick: the same document built node by node and written out.
void CopyInto(const pugi::xml_node& AFrom, pugi::xml_node ATo) {
  for (const pugi::xml_attribute A : AFrom.attributes()) ATo.append_attribute(A.name()) = A.value();
  for (const pugi::xml_node C : AFrom.children()) {
    if (C.type() == pugi::node_element) CopyInto(C, ATo.append_child(C.name()));
    else ATo.append_child(C.type()).set_value(C.value());
  }
}

void BM_PugixmlBuildAndWrite(benchmark::State& State) {
  QByteArray B = Saved(sfXML);
  B.replace(" =\"", " FFH=\"");
  pugi::xml_document Source;
  Source.load_buffer(B.constData(), size_t(B.size()));
  for (auto _ : State) {
    pugi::xml_document Doc;
    CopyInto(Source, Doc);
    std::ostringstream Out;
    Doc.save(Out, "  ");
    benchmark::DoNotOptimize(Out.str().size());
  }
  State.SetBytesProcessed(State.iterations() * B.size());
  State.SetLabel("yardstick of the XML save");
}
BENCHMARK(BM_PugixmlBuildAndWrite)->Unit(benchmark::kMillisecond);

}  // namespace

DSE_GUI_BENCHMARK_MAIN()
