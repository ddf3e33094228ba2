// The application object and the extension-module record.
#include "tessaline/module/module.h"

#include "platform/release.h"
#include "tessaline/host.h"
#include "tessaline/platform/strings.h"

namespace {

Tessaline_Module the_module = {0, 0, "tessaline", "0.1.0"};

// Constructed when the library is loaded, destroyed when it is unloaded.
CTessalineApp theApp("tessaline");

}  // namespace

CTessalineApp::CTessalineApp(const char* name) : m_pszAppName(name) {
  InitInstance();
}

CTessalineApp::~CTessalineApp() {
  ExitInstance();
}

int CTessalineApp::InitInstance() {
  SetMessageBoxHandler(nullptr);
  SetMessageBeepHandler(nullptr);
  ClearStringResources();
  the_module.initialized = 1;
  the_module.released = 0;
  return 1;
}

int CTessalineApp::ExitInstance() {
  Release_Memory_Table();
  Release_Gdi_Table();
  the_module.initialized = 0;
  the_module.released = 1;
  return 0;
}

const Tessaline_Module* Tessaline_Get_Module() {
  return &the_module;
}
