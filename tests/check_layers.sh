#!/usr/bin/env bash
# Fails when a source file includes a header from a higher layer.
# Layers, lowest first: value types and formats; formula syntax; model and
# cell rules; evaluator; editing; grid and drawing; io; print; ai; cloud.
set -u
src=${1:?usage: check_layers.sh SRC_DIR}

layer_of() {  # layer_of <path relative to src>
  local path=$1 name
  name=$(basename "$path")
  case "$name" in
    Tabrino.Types.*|Tabrino.Cell.*|Tabrino.CellFormat.*|Tabrino.Theme.*|Tabrino.StyleSheet.*|\
    Tabrino.Utf16.*|Tabrino.FormatSettings.*|Tabrino.NumberFormat.*|Tabrino.FloatFormat.*|\
    Tabrino.DateTimeFormat.*|Tabrino.DateSerial.*) echo 0; return ;;
    Tabrino.Formula.Tokenizer.*|Tabrino.Formula.Parser.*|Tabrino.Formula.TreeCache.*) echo 1; return ;;
  esac
  case "$path" in
    model/*|cellrules/*) echo 2 ;;
    formula/*) echo 3 ;;
    editing/*|richtext/*) echo 4 ;;
    grid/*|drawing/*) echo 5 ;;
    io/*) echo 6 ;;
    print/*) echo 7 ;;
    ai/*) echo 8 ;;
    cloud/*) echo 9 ;;
    *) echo 9 ;;
  esac
}

declare -A header_layer
while IFS= read -r file; do
  rel=${file#"$src"/}
  header_layer[$(basename "$rel")]=$(layer_of "$rel")
done < <(find "$src" -name '*.h')

status=0
while IFS= read -r file; do
  rel=${file#"$src"/}
  mine=$(layer_of "$rel")
  while IFS= read -r inc; do
    theirs=${header_layer[$inc]:-}
    if [ -n "$theirs" ] && [ "$theirs" -gt "$mine" ]; then
      echo "layer violation: $rel (layer $mine) includes $inc (layer $theirs)"
      status=1
    fi
  done < <(sed -n 's/^#include "\([^"]*\)".*/\1/p' "$file")
done < <(find "$src" -name '*.h' -o -name '*.cpp')
[ $status -eq 0 ] && echo "layers: ok"
exit $status
