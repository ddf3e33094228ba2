// The library as a loadable module: what it sets up when a host loads
// libtessaline.so and what it gives back when the host unloads it, so that
// a host may load and unload it any number of times without leaking.
//
// Start-up order, when the dynamic loader maps the library:
//  1. The loader runs the library's static initialisers. The platform's
//     tables (movable memory, graphics objects with their stock objects)
//     are not made here but on first use.
//  2. The application object `theApp` (one CTessalineApp) is constructed;
//     its InitInstance fills in the extension-module record, puts the host
//     hooks to their defaults (message boxes to standard error, beeps to
//     nothing) and forgets any string resources, so that every load starts
//     from the same state.
//  3. The host then sets its own hooks (host.h: message box handler,
//     display metrics, string resource 20023, unit factors, windows) before
//     its other calls, and uses the library.
//
// Shut-down order, when the host unloads the library (dlclose) or the
// process ends:
//  1. Function-local statics made after `theApp` (the string table, the
//     contexts' saved states) are destroyed first, by the C++ rules.
//  2. ~CTessalineApp runs ExitInstance, which releases what the library
//     still owns: the section library's statics (constant data: nothing to
//     give back), every movable block still in the handle table and the
//     table itself, every graphics object (stock objects included) and its
//     table. Blocks and objects the host never freed go with them: a host
//     must not use a handle it got from a previous load.
//  3. The record is marked released. A call that reaches the library after
//     this (from another library's exit code) gets fresh, empty tables.
#pragma once

#include "tessaline/export.h"

// The extension-module record: the library's own view of its load.
struct Tessaline_Module {
  int initialized;      // 1 between InitInstance and ExitInstance
  int released;         // 1 after ExitInstance
  const char* name;     // "tessaline"
  const char* version;  // the library's version
};

class TESSALINE_API CTessalineApp {
 public:
  explicit CTessalineApp(const char* name);
  ~CTessalineApp();
  CTessalineApp(const CTessalineApp&) = delete;
  CTessalineApp& operator=(const CTessalineApp&) = delete;

  // Set-up at load (see above); 1.
  int InitInstance();
  // Release at unload (see above); 0.
  int ExitInstance();

  const char* m_pszAppName;
};

// The record of the library loaded now. C linkage, so that a host can find
// it with dlsym without knowing C++ name mangling.
extern "C" TESSALINE_API const Tessaline_Module* Tessaline_Get_Module();
