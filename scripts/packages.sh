# Sourced by the scripts that need Debian packages.

# Installs those of the named packages that are missing; asks for the password
# by sudo unless root runs it.
need_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null |
      grep -qx installed || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  echo "Installing ${missing[*]} ..." >&2
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get -qq update >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -qq install -y --no-install-recommends "${missing[@]}" >&2
}

build_packages=(cmake make g++ libfltk1.1-dev)
window_packages=(xvfb xdotool imagemagick fonts-dejavu-core)
