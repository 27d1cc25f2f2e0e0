#pragma once
// Feeds bytes to the drawing loader: any outcome but an EVDEError is a finding.
#include "Classes.h"
#include "VDIFormat.h"
#include "VectorDrawing.h"

#include <QGuiApplication>

#include <cstdint>
#include <cstdlib>

// Text items measure their text: an offscreen application, made once.
inline void FuzzGuiApp() {
  static QGuiApplication* App = [] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int Argc = 1;
    static char Name[] = "fuzz";
    static char* Argv[] = {Name, nullptr};
    return new QGuiApplication(Argc, Argv);
  }();
  (void)App;
}

inline void FuzzLoad(const QByteArray& ABytes) {
  FuzzGuiApp();
  TBytesStream S(ABytes);
  TVectorDrawing D;
  try {
    D.LoadFromStream(S);
  } catch (const EVDEError&) {
  }
  if (D.UpdateCount() != 0) std::abort();
}
