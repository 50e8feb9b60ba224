subroutine mark_up(a, b)
  if (a < b .and. b > 0) print *, "<b>bold</b> &amp; mark_up"
  call mark_up(a, &
            & b) ! <-- calls MARK_UP </pre>
	tabbed = 100 %s %d %n %%
  print *, 'mark_up'	! démark_upÿ
  y = a*b//'Âµ'//mark_up-mark_up2+mark_up.x+mark_up_
end subroutine mark_up
! <EOF> {}[]\~^$"'`
