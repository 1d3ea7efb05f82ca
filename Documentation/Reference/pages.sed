# Pictures lie beside the reference's pages. Files outside the documentation are named, not linked: the reference is read
# elsewhere, too.
s#\(\.\./(Conventions/|Tour)#(\1#g
s#\[([^]]*)\]\(\.\./[^)]*\)#\1#g
