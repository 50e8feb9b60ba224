subroutine driver(f, g)
  interface
    function f(x)
    end function f
  end interface
  interface
    subroutine g(x)
    end subroutine g
  end interface
  external ! nothing
  call g(f(1))
end subroutine driver
interface assignment (=)
end interface
subroutine
program ! unnamed
end
