#include "commands/AxesOption.h"

#include <CLI/CLI.hpp>

namespace quilon {

void AddAxesOption(CLI::App& app, std::string& axes)
{
  app.add_option("--axes", axes,
                 "Axes of components: global, principal, cylindrical:px,py,pz,dx,dy,dz, rectangular:ax,ay,az,bx,by,bz "
                 "or an orientation of the deck (default: global)")
      ->type_name("AXES")
      ->check(
          [](const std::string& text) { return text.empty() ? std::string("empty, expected axes") : std::string(); });
}

}  // namespace quilon
