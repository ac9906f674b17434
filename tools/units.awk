# What decides about the analysis of each compiled source, one file of facts per source. Input:
#   part=1  lines "HASH  PATH": the files that the build has read
#   part=2  lines "SOURCE<tab>COMPILE COMMAND"
#   part=3  paths in question; a source counts when it, or what it includes, is among them
#   part=4  lines that concern every source
#   part=5  what `ninja -t deps` says: paragraphs of an object's line and its files' lines
# Variables: out, the folder of the files of facts, in which '%' stands for '/'.
# Output: the sources in question that this build does not compile.

part == 1 { hash[substr($0, 67)] = $1; next }
part == 2 { split($0, pair, "\t"); command[pair[1]] = pair[2]; next }
part == 3 { wanted[$0] = 1; next }
part == 4 { common = common $0 "\n"; next }

/^ / { sub(/^ +/, ""); files[++count] = $0; next }
/^$/ { finish(); next }
END { finish(); list_uncompiled() }

function finish(    i, source, facts, counts) {
    for (i = 1; i <= count; i++) {
        if (source == "" && files[i] in command) source = files[i]
        if (files[i] in wanted) counts = 1
        facts = facts hash[files[i]] "  " files[i] "\n"
    }
    count = 0
    if (source == "" || source in seen) return
    seen[source] = 1
    if (counts && source !~ /^(build)?\//) write_facts(source, command[source] "\n" common facts)
}

function write_facts(source, facts,    name) {
    name = source
    gsub("/", "%", name)
    printf "%s", facts > (out "/" name)
    close(out "/" name)
}

function list_uncompiled(    path) {
    for (path in wanted)
        if (path ~ /\.cpp$/ && !(path in seen))
            print path
}
