set pagination off
set confirm off
set debuginfod enabled off
up
print r
print s
print u
print l
print d
print empty
print element
print rs
print ss
print cell
print caught
print owned
print reference
print *base
print temporary
set quorvel-rows 2
print large
print many
print slope
set quorvel-rows 3
print many
quorvel code 40320
quorvel code 60080
quorvel code 10680
quorvel code 123
quorvel code 0
quorvel code code + 40320
kill
