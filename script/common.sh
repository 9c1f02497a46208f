# Functions that the scripts share. To be sourced; goes to the root of the checkout.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*" >&2; }

# All files of ours that end in one of the given endings.
ours() {
  local patterns=()
  for ending in "$@"; do patterns+=("*.$ending"); done
  git ls-files --cached --others --exclude-standard -- "${patterns[@]}" | while read -r file; do
    [ -f "$file" ] && printf '%s\n' "$file"
  done
}
