# shellcheck shell=bash
# What the checks of a package have in common: counting, waiting, and what an installation is asked.

readonly home=/opt/quillon-web
passed=0
failed=0

export DEBIAN_FRONTEND=noninteractive

check() {
  local words=$1
  shift
  echo "--- $words" >&2
  if "$@" >&2; then
    passed=$((passed + 1))
    echo "ok      $words"
  else
    failed=$((failed + 1))
    echo "not ok  $words"
  fi
}

count() { echo "$passed passed, $failed failed"; }

fails() { ! "$@"; }

eventually() {
  local seconds=$1 second
  shift
  for ((second = 0; second < seconds; second++)); do
    if "$@" >/dev/null 2>&1; then return 0; fi
    sleep 1
  done
  return 1
}

# The package of this checkout, and the same with a higher revision and another help text.
package() { echo /packages/quillon-web_*_*.deb; }
upgrade() { echo /packages/upgrade/quillon-web_*_*.deb; }

install_package() { apt-get -q -y install "$@"; }
remove_package() { apt-get -q -y remove quillon-web; }
purge_package() { apt-get -q -y purge quillon-web; }

# In the place of the shell that calls it, so that signals reach the program.
become_service() { exec setpriv --reuid quillonweb --regid quillonweb --clear-groups "$@"; }
as_service() { (become_service "$@"); }

# The page is whole, and in the words of its file.
site_answers() {
  local page
  page=$({ printf 'GET / HTTP/1.0\r\n\r\n' >&3 && timeout 5 sed '/<\/html>/q' <&3; } \
    3<>"/dev/tcp/127.0.0.1/$1") && [[ $page == *'</html>'* && $page != *n/a* ]]
}

# 30 seconds after its start, and some more on a busy machine.
site_opens() { eventually 60 site_answers "$1"; }

owner_and_mode() { stat -c '%U:%G %a' "$home/$1"; }
is_text() { [[ $1 == "$2" ]]; }
holds() { grep -q "$1" "$2"; }

# Settings, history and the rest that an operator would miss; caches and side files are not.
data() { (cd "$home" && sha256sum ./*.mdb Morvane.ini WebReports/qws.css); }
data_is() { [[ $1 == *History.mdb* && $(data) == "$1" ]]; }

# Nothing of the package, of its data or of its user; logs of the package tools are theirs.
nothing_is_left() {
  local traces
  traces=$(find / -xdev \( -path /packages -o -path /tests -o -path /results -o -path /var/log \
    -o -path /proc \) -prune -o \( -iname '*quillon*' -o -nouser -o -nogroup \) -print)
  echo "$traces"
  [[ -z $traces ]] && ! getent passwd quillonweb && ! getent group quillonweb
}
