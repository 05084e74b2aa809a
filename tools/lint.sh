# shellcheck shell=bash
# Sourced by ./test: the linters and formatters, one function each. They read the build directory for
# the commands of the compiler, the scripts that the build puts together, and generated files.

cpp_files() {
    git ls-files '*.cpp' '*.h'
}

lint_rooms() {
    node tools/checkrooms.mjs
}

lint_clang_format() {
    cpp_files | xargs clang-format --dry-run -Werror
}

# Takes longer than everything else here together. Headers are looked at with the sources that include
# them.
lint_clang_tidy() {
    local commands=out/clang-tidy
    mkdir -p "$commands"
    # Clang knows neither this option of g++ nor its precompiled headers.
    sed 's/ -fno-gnu-unique//g; s/ -Winvalid-pch -include [^ "]*//g' build/compile_commands.json > "$commands/compile_commands.json"
    git ls-files '*.cpp' ':!tests/fuzz' ':!tests/host/consumer' ':!examples' \
        | xargs --max-procs="$(nproc)" --max-args=4 clang-tidy -quiet -p "$commands" 2> "$commands/log" \
        || { grep -v 'warnings generated' "$commands/log"; return 1; }
}

lint_shellcheck() {
    # Scripts are found by their first line.
    git grep --files-with-matches --extended-regexp '^#!/(usr/bin/env bash|bin/(ba)?sh)' \
        -- ':!*.md' ':!*.cpp' ':!*.mjs' ':!*.ts' ':!plugin/config' \
        | xargs shellcheck --external-sources \
        && shellcheck --external-sources tools/*.sh build/plugin/config/*.sh build/packaging/completions/*.bash
}

lint_javascript() {
    npm run --silent lint
}

lint_python() {
    git ls-files '*.py' | xargs flake8 --max-line-length 100
}

lint_spelling() {
    git ls-files ':!package-lock.json' ':!*.png' ':!tests/fuzz/seeds' ':!*zh*' \
        | xargs codespell --ignore-words tools/correctwords.txt
}

lint_desktop_files() {
    desktop-file-validate packaging/*.desktop build/suite/desktops/*.desktop \
        && appstreamcli validate --no-net packaging/*.metainfo.xml
}

lint_licences() {
    reuse lint --quiet || reuse lint
}

# run_linters NAME...: runs each, also after one has failed; prints how long it took.
run_linters() {
    local linter started status=0
    for linter in "$@"; do
        started=$SECONDS
        if "lint_$linter"; then
            say "lint: $linter passed, $((SECONDS - started)) s"
        else
            say "lint: $linter FAILED, $((SECONDS - started)) s"
            status=1
        fi
    done
    return $status
}

run_quick_linters() {
    run_linters rooms clang_format shellcheck python spelling desktop_files licences javascript
}
