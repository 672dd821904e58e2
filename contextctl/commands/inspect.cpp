// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <memory>

#include "contextctl/commands/command_set.h"
#include "contextctl/inspect/inspect.h"

namespace contextctl {
namespace {

struct Arguments {
  InspectOptions options;
  std::string kind = "context";
};

ExitStatus inspectLibrary(const Session& session, const Arguments& arguments) {
  InspectOptions options = arguments.options;
  options.kind = arguments.kind == "module" ? LibraryKind::kModule : LibraryKind::kContext;
  options.seconds = session.seconds();
  const Report report = inspect(options);
  (session.json() ? printJson : print)(report, session.out());
  return fits(report) ? kExitOk : kExitNo;
}

}  // namespace

void addInspectCommand(CommandSet& commands) {
  const auto arguments = std::make_shared<Arguments>();
  InspectOptions& options = arguments->options;
  commands
      .add("inspect", "Check whether a context or module library fits libcpp2c",
           "  contextctl inspect libcontext_proxy.so\n"
           "  contextctl inspect --live --kind module ./libmodule.so\n"
           "  contextctl inspect --against mips/libcpp2c.so --sysroot mips/root libmodule.so",
           [=](const Session& session) { return inspectLibrary(session, *arguments); })
      .require("LIBRARY", options.library, "Library file")
      .option("--against", "LIBRARY", options.against,
              "The libcpp2c.so to fit; default: the one on this machine")
      .option("--library-path", "FOLDER:...", options.library_path, "Folders to search for libraries first")
      .option("--sysroot", "FOLDER", options.sysroot, "Root folder of another machine's file system")
      .option("--kind", "KIND", arguments->kind, "Kind of the library; default: context")
      .oneOf({"context", "module"})
      .flag("--live", options.live, "Load it in a separate process and list its operations");
}

}  // namespace contextctl
