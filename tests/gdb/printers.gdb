set pagination off
set confirm off
set debuginfod enabled off
break Stop
run
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
set quorvel-rows 2
print large
quorvel code 40320
quorvel code 60080
quorvel code 10680
quorvel code 123
kill
