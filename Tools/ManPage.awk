# awk -v summary=... -v version=... -f ManPage.awk <help>: the manual page of a tool, from its own help.
#
# The help begins with "Usage: name ...". Lines that begin with two spaces and a term describe it in a second column,
# over as many lines as are indented there; all others are paragraphs.

function escaped(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    return text ~ /^[.']/ ? "\\&" text : text
}

NR == 1 {
    sub(/^Usage: /, "")
    printf ".TH %s 1 \"\" \"ZmMath %s\" \"User Commands\"\n", toupper($1), version
    printf ".SH NAME\n%s \\- %s\n.SH SYNOPSIS\n.B %s\n.SH DESCRIPTION\n", $1, summary, escaped($0)
    next
}
/^$/ { paragraph = 1; next }
/^  [^ ]/ {
    sub(/^  /, "")
    column = match($0, /  +/)
    printf ".TP\n.B %s\n%s\n", escaped(column ? substr($0, 1, column - 1) : $0),
        escaped(column ? substr($0, column + RLENGTH) : "")
    paragraph = 0
    next
}
{
    if (paragraph) { print ".PP" }
    paragraph = 0
    sub(/^ +/, "")
    print escaped($0)
}
