// Prints docs/onf-catalogue.md from the table. Run it after adding an id:
//   onf_catalogue_page > docs/onf-catalogue.md

#include <iostream>

#include "bundled/OnfCatalogue.h"

int main()
{
  std::cout << OnfCatalogue::MarkdownPage() << std::flush;
  return std::cout ? 0 : 1;
}
