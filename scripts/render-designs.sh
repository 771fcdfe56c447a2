#!/usr/bin/env bash
# Draws every built-in design with the sample invoices and with a long invoice that runs over
# three pages, as PDF files and 60 dpi pictures, for looking the designs over.
#   scripts/render-designs.sh [OUT_DIR]      (default /tmp; pictures go to OUT_DIR/designs)
# BILLFOLD_CLI names the billfold-cli binary (default: build/src/cli/billfold-cli).
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
cli=${BILLFOLD_CLI:-$root/build/src/cli/billfold-cli}
out=${1:-/tmp}/designs
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$cli" new "$work/sample.tadb" --sample --now 2026-11-22T10:00:00Z >/dev/null
"$cli" export-json "$work/sample.tadb" -o "$work/sample.json"

# A copy of invoice 2001 numbered 3001 with 45 items of its own: three pages in most designs.
python3 - "$work/sample.json" "$work/long.json" <<'PY'
import json, sys
from decimal import Decimal, ROUND_HALF_UP
doc = json.load(open(sys.argv[1]))
objects = doc["objects"]
source = next(k for k, v in objects.items() if k.startswith("Invoice/") and v["identification"] == "2001")
long_invoice = dict(objects[source], identification="3001", purchaseOrder="HF-5000")
objects["Invoice/900"] = long_invoice
template = next(v for k, v in objects.items() if k.startswith("Material/"))
for i in range(1, 46):
    objects["Material/%d" % (900 + i)] = dict(
        template, invoice="Invoice/900", name="Design work, part %d of the spring programme" % i,
        sku="DW-%03d" % i, quantity=str(i % 5 + 1), price=str(20 + i), sortIndex=i,
        tax="0.085" if i % 3 else "0.2", taxName="Sales Tax" if i % 3 else "City Tax")
# The cached totals travel with the file, so they are worked out here: rounded line by line.
cent = Decimal("0.01")
lines = [v for k, v in objects.items() if k.startswith("Material/") and v["invoice"] == "Invoice/900"]
sub = sum(Decimal(v["quantity"]) * Decimal(v["price"]) for v in lines).quantize(cent, ROUND_HALF_UP)
tax = sum((Decimal(v["quantity"]) * Decimal(v["price"]) * Decimal(v["tax"])).quantize(cent, ROUND_HALF_UP)
          for v in lines)
long_invoice.update(subTotal=str(sub), itemTaxes=str(tax), totalTaxes=str(tax), totalDiscount="0",
                    totalTax2="0", total=str(sub + tax))
json.dump(doc, open(sys.argv[2], "w"))
PY
"$cli" import-json "$work/long.json" -o "$work/long.tadb" --force >/dev/null

for design in "Blue Simple" "Sky" "Time" "Rainbow" "Wave"; do
    slug=$(echo "$design" | tr 'A-Z ' 'a-z-')
    for number in 2001 2002 2005; do
        "$cli" pdf "$work/sample.tadb" --invoice "$number" --template "$design" \
            -o "$out/$slug-$number.pdf" >/dev/null
        pdftoppm -png -r 60 "$out/$slug-$number.pdf" "$out/$slug-$number"
    done
    "$cli" pdf "$work/long.tadb" --invoice 3001 --template "$design" -o "$out/$slug-long.pdf"
    pdftoppm -png -r 60 "$out/$slug-long.pdf" "$out/$slug-long"
done
echo "Pictures in $out"
