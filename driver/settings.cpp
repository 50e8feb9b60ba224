#include "driver/settings.h"

std::uint32_t html_style = WRITE_INDEX | BOLD_KEYWORDS | LEVEL_NONE;
std::string html_dir = "HTML";
int verbose = 0;
char slash = '/';
std::time_t date_time = std::time(nullptr);
ZelkorUserInterface* gui_instance = nullptr;
std::string index_title = "Hyperlinked Fortran Source Tree by Qumbra";
std::string page_trailer =
    "<hr><small>Generated %s by "
    "<a href=\"https://zelkor.example/\">zelkor</a>, A CASE Tool from "
    "<a href=\"mailto:zelkor@qumbra.example\">Qumbra</a></small>";
