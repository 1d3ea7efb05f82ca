# Teaches Doxygen the conventions of the headers: each header is documented as a file; a paragraph of plain comments on
# its own documents that file; a comment applies to all declarations up to the next empty line or comment, and to all
# variables of one declaration.
BEGIN { print "/** @file */" }

function forget() { doc = ""; inComment = 0 }

/^\/\/( |$)/ && !/NOLINT|cppcheck/ {
    forget()
    text = $0
    sub(/^\/\/ ?(--- )?/, "", text)
    sub(/ ?---+$/, "\n", text)
    paragraph = paragraph text "\n"
    next
}

paragraph != "" {
    if (/^$/) print "/** @file\n@details\n" paragraph "*/"
    paragraph = ""
}

/^[ \t]*\/\/\// {
    if (!inComment) doc = ""
    inComment = 1
    doc = doc $0 "\n"
    if (/@[{}]/) forget()  # a group has its comment already
    print
    next
}

/^[ \t]*($|#if|#endif|\/\/|(public|protected|private):)/ {
    forget()
    print
    next
}

{
    code = $0
    sub(/[ \t]*\/\/.*/, "", code)
    if (!inComment && doc != "" && complete && $0 !~ /\/\/\/</) printf "%s", doc
    inComment = 0

    # Variables of one declaration, each with the comment.
    if (code ~ /^[ \t]*[A-Za-z_0-9]+ [A-Za-z]+( = [0-9])?(, [A-Za-z]+( = [0-9])?)+;$/) {
        type = code
        sub(/ [A-Za-z]+( = [0-9])?,.*/, "", type)
        gsub(/, /, ";\n" doc type " ", code)
        print code
        next
    }
    print
    depth += gsub(/{/, "{", code) - gsub(/}/, "}", code)
    if (code ~ /^[ \t]*(typedef )?(class|struct|union|enum|namespace).*{[ \t]*$/ || depth < 0) {
        depth = 0
        forget()
    }
    complete = depth == 0 && (code ~ /[;}][ \t]*$/ || code ~ /^#define .*[^\\]$/)
}
