#pragma once
#include "shell/ArrayImportJob.h"

namespace CLI {
class App;
}

namespace rmcli {

struct ImportArrayOptions {
  rm::ArrayImportRequest request;
  bool verbose = false;
};

CLI::App* AddImportArrayCommand(CLI::App& app, ImportArrayOptions& options);
// Exit status: 0 the picture written; 1 the data do not make the picture (nothing written); 2 a
// usage error.
int RunImportArray(const ImportArrayOptions& options);

}  // namespace rmcli
