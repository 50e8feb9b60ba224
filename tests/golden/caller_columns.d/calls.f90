call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s13; call s14; call s23; call s24
call s14; call s23; call s24
call s23; call s24
call s23; call s24
call s23; call s24
call s23; call s24
call s23; call s24
call s23; call s24
call s23; call s24
call s23; call s24
call s23; call s24
call s24
