# Sourced by the scripts that need programs and libraries of the system.

# What is needed, by the names of Debian's packages. "fltk" is the toolkit,
# whose package name differs between releases.
build_packages=(cmake make g++ fltk)
window_packages=(xvfb xdotool imagemagick fonts-dejavu-core)
test_packages=("${window_packages[@]}" libgtest-dev gfortran locales python3)

# The best toolkit first: the window was designed for 1.1; 1.4 supports dense
# screens, 1.3 does not.
toolkits=(libfltk1.1-dev libfltk1.4-dev libfltk1.3-dev)

has_cmake() {
  local version
  version=$(cmake --version | sed -n '1s/[^0-9]*//p') &&
    [ "$(printf '%s\n' 3.22 "$version" | sort -V | head -n 1)" = 3.22 ]
}

has_header() { "${CXX:-c++}" -E -x c++ - <<<"#include <$1>"; }

# Whether the system has what a package provides, from whatever source.
is_installed() {
  case $1 in
    bubblewrap) command -v bwrap ;;
    cmake) has_cmake ;;
    g++) command -v "${CXX:-c++}" ;;
    fltk) command -v fltk-config ;;
    fonts-dejavu-core) find /usr/share/fonts -name 'DejaVuSans*' | grep . ;;
    imagemagick) command -v import ;;
    libbenchmark-dev) has_header benchmark/benchmark.h ;;
    libgtest-dev) has_header gtest/gtest.h ;;
    locales) [ -e /usr/share/i18n/locales/de_DE ] ;;
    ninja-build) command -v ninja ;;
    nodejs) command -v node ;;
    x11-xserver-utils) command -v xrefresh ;;
    xvfb) command -v Xvfb ;;
    *) command -v "$1" || dpkg-query -W -f '${db:Status-Status}' "$1" | grep -x installed ;;
  esac >/dev/null 2>&1
}

# What a package provides, for users of any system.
describe() {
  case $1 in
    cmake) echo "CMake 3.22 or newer" ;;
    g++) echo "a C++17 compiler" ;;
    fltk) echo "FLTK 1.1, 1.3 or 1.4 with its headers and fltk-config" ;;
    fonts-dejavu-core) echo "the DejaVu fonts" ;;
    imagemagick) echo "ImageMagick" ;;
    libbenchmark-dev) echo "Google Benchmark with its headers" ;;
    libgtest-dev) echo "GoogleTest with its headers" ;;
    locales) echo "localedef and the sources of locales (/usr/share/i18n)" ;;
    x11-xserver-utils) echo "xrefresh" ;;
    xvfb) echo "Xvfb" ;;
    *) echo "$1" ;;
  esac
}

# Sets "missing" to those of the named packages that the system lacks.
find_missing() {
  missing=()
  local package
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
}

# Replaces "fltk" in "missing" by the name of the toolkit's package.
name_toolkit() {
  local i toolkit
  for i in "${!missing[@]}"; do
    [ "${missing[i]}" = fltk ] || continue
    for toolkit in "${toolkits[@]}"; do
      missing[i]=$toolkit
      [ -z "$(apt-cache --quiet=2 show "$toolkit" 2>/dev/null)" ] || break
    done
  done
}

# Lists what is missing, for users who install it themselves.
ask_for_missing() {
  local package
  {
    echo "Zelkor needs what this system lacks. Please install:"
    for package in "${missing[@]}"; do echo "  $(describe "$package")"; done
  } >&2
  exit 1
}

# Installs what is missing, or says what root must run. apt's output goes to a
# log.
install_missing() {
  local install=(apt-get install -y --no-install-recommends) as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      name_toolkit
      echo "Packages are missing. Please have root run this line, and try again:" >&2
      echo "  apt-get update && ${install[*]} ${missing[*]}" >&2
      exit 1
    fi
    as_root=(sudo)
  fi
  local log=build/packages.log
  mkdir -p build
  "${as_root[@]}" apt-get update >"$log" 2>&1 || true
  name_toolkit
  echo "Installing ${missing[*]} ..." >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive "${install[@]}" "${missing[@]}" \
    >>"$log" 2>&1 || {
    tail -n 5 "$log" >&2
    echo "The packages could not be installed; all that apt said is in $log." >&2
    exit 1
  }
}

# Makes sure that the system has what the named packages provide. Installs what
# is missing if there is apt-get, otherwise lists it and ends the script. Call
# this in the project's folder.
need_packages() {
  local missing
  find_missing "$@"
  [ ${#missing[@]} -gt 0 ] || return 0
  ! command -v apt-get >/dev/null || install_missing
  find_missing "$@"
  [ ${#missing[@]} -eq 0 ] || ask_for_missing
}
