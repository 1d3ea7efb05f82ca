# Pictures are beside the reference's pages. Files outside the documentation are named, not linked, because the
# reference is also read elsewhere.
s#\(\.\./(Conventions/|Tour|Crowd)#(\1#g
s#\[([^]]*)\]\(\.\./[^)]*\)#\1#g
