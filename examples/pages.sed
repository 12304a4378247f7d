s/\r *\r/\n/g
