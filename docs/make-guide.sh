#!/bin/sh
# Makes the HTML pages of the user guide, one for each window and an index: from a comment
# "page: NAME..." on, the lines of a Markdown file belong to the pages of those names.
#
#   make-guide.sh FOLDER MARKDOWN-PROGRAM FILE...
set -eu
folder=$1 markdown=$2
shift 2
mkdir -p "$folder"
rm -f "$folder"/*.html "$folder"/*.md

awk -v folder="$folder" '
    function add(line,    i) {
        for (i = 1; i <= count; ++i) {
            if (!(pages[i] in title) && line ~ /^#/) {
                title[pages[i]] = line
                sub(/^#+ */, "", title[pages[i]])
                if (pages[i] != "index") list = list "- [" title[pages[i]] "](" pages[i] ".html)\n"
            }
            print line > (folder "/" pages[i] ".md")
        }
    }
    FNR == 1 {
        name = FILENAME
        gsub(/.*\/|\.md$/, "", name)
        count = split(name == "user-guide" ? "index" : name, pages)
    }
    /^<!-- page: .* -->$/ {
        gsub(/^<!-- page: | -->$/, "")
        count = split($0, pages)
        next
    }
    {
        gsub(/\(simulated-board\.md\)/, "(simulated-board.html)")
        gsub(/\(command\.md\)/, "(command.html)")
        gsub(/\(adapters\.md[^)]*\)/, "(adapters.html)") # anchors of files get lost
        add($0)
    }
    END { printf "\n## All windows\n\n%s", list > (folder "/index.md") }
' "$@"

for page in "$folder"/*.md; do
    {
        cat <<'END'
<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="color-scheme" content="light dark">
<style>
body { max-width: 50em; margin: 1em auto; padding: 0 1em; font-family: sans-serif; line-height: 1.4 }
img { max-width: 100% }
table { border-collapse: collapse }
td, th { border: 1px solid gray; padding: .2em .5em; text-align: left; vertical-align: top }
</style>
END
        echo "<title>$(sed -n '/^#/{s/^#* *//p;q}' "$page")</title>"
        [ "$page" = "$folder/index.md" ] || echo '<p><a href="index.html">User guide</a></p>'
        "$markdown" -f nopants,fencedcode "$page"
        echo '</html>'
    } >"${page%.md}.html"
    rm "$page"
done
